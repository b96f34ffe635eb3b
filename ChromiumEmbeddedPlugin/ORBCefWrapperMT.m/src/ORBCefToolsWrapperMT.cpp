#include "ORBCefToolsWrapperMT.h"

#include <algorithm>
#include <cctype>

#include "include/cef_parser.h"
#include "include/cef_version.h"
#include "platform/Files.h"

namespace ORBCefToolsWrapperMT {

namespace {

constexpr char kInstallVariable[] = "ORBInstallPath";
constexpr char kRootSeparator = ';';

bool IsSet(const char* variable) {
  return ORBCefToolsAccessor::ORBGetEnv(variable) != nullptr;
}

// An unset variable counts as empty.
std::string ValueOf(const char* variable) {
  const char* value = ORBCefToolsAccessor::ORBGetEnv(variable);
  return value ? value : std::string();
}

template <class Test>
std::string FindOnPaths(const std::string& relative_path, const std::string& roots, Test test) {
  std::string relative = relative_path;
  ToNativeSeparators(relative);
  for (const std::string& root : SplitString(roots, kRootSeparator)) {
    std::string path = root + platform::kSeparator + relative;
    if (test(path))
      return path;
  }
  return std::string();
}

}  // namespace

bool CheckThread(cef_thread_id_t id) {
  static const bool unchecked = IsSet("ORBCEF_NO_TID_CHECK");
  return unchecked || CefCurrentlyOn(id);
}

bool IsOffScreenRendering() {
  static const bool enabled = IsSet("ORBCEF_ENABLE_OSR");
  return enabled;
}

bool IsTestRig() {
  static const bool rig = IsSet("QVL_RIG_TMP") || IsSet("ORBCEF_RECORD");
  return rig;
}

bool IsUnderTestTool() {
  std::string tool = ValueOf("QVL_RIG_EXECTOOL");
  std::transform(tool.begin(), tool.end(), tool.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (IsSet("ReplayPurify") || IsSet("ReplayPurcov"))
    return true;
  return tool.find("memorycheck") != std::string::npos;
}

std::string GetUserAgentProduct() {
  std::string product = "Chrome/";
  product += std::to_string(CHROME_VERSION_MAJOR) + '.' + std::to_string(CHROME_VERSION_MINOR) +
             '.' + std::to_string(CHROME_VERSION_BUILD) + '.' +
             std::to_string(CHROME_VERSION_PATCH);
  product += " 7XO/";
  const int level = ORBCefToolsAccessor::GetOrbisReleaseLevelInfo();
  product += level > 0 ? std::to_string(level) : "1.0";
  return product;
}

bool IsLogTopicEnabled(const std::string& topic) {
  // An unset variable has no topics, not even the empty one.
  static const bool logging = IsSet("ORBCEF_LOG");
  static const std::string topics = ValueOf("ORBCEF_LOG");
  return logging && topics.find(topic) != std::string::npos;
}

const std::string& InstallPath() {
  // Never destroyed: the engine's threads may ask to the end of the process.
  static const std::string& roots = *new std::string(CurrentInstallPath());
  return roots;
}

std::string CurrentInstallPath() {
  std::vector<std::string> roots = SplitString(ValueOf(kInstallVariable), kRootSeparator);
  for (std::string& root : roots) root = platform::MakeAbsolute(root);
  return JoinStrings(roots, kRootSeparator);
}

void FixInstallPath() {
  const std::vector<std::string> given = SplitString(ValueOf(kInstallVariable), kRootSeparator);
  const std::string roots = CurrentInstallPath();
  if (roots != JoinStrings(given, kRootSeparator))
    ORBCefToolsAccessor::ORBPutEnv((std::string(kInstallVariable) + '=' + roots).c_str());
}

std::string BaseLanguage(const std::string& tag) {
  return tag.substr(0, tag.find('-'));
}

void ToBackslashes(std::string& text) {
  std::replace(text.begin(), text.end(), '/', '\\');
}

void ToNativeSeparators(std::string& path) {
  std::replace(path.begin(), path.end(), '/', platform::kSeparator);
}

std::string CanonicalURL(const std::string& url) {
  if (url.empty())
    return std::string();
  CefURLParts parts;
  if (!CefParseURL(url, parts))
    return std::string();
  return CefString(&parts.spec).ToString();
}

std::vector<std::string> SplitString(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::string::size_type start = 0; start < text.size();) {
    const std::string::size_type end = std::min(text.find(separator, start), text.size());
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

std::string JoinStrings(const std::vector<std::string>& parts, char separator) {
  std::string text;
  for (std::vector<std::string>::size_type i = 0; i < parts.size(); ++i) {
    if (i > 0)
      text.push_back(separator);
    text += parts[i];
  }
  return text;
}

std::string FindFileOnPaths(const std::string& relative_path, const std::string& roots) {
  return FindOnPaths(relative_path, roots, platform::IsReadable);
}

std::string FindDirectoryOnPaths(const std::string& relative_path, const std::string& roots) {
  return FindOnPaths(relative_path, roots, platform::IsDirectory);
}

}  // namespace ORBCefToolsWrapperMT
