#include "ORBCefResourceTables.h"

#include <atomic>
#include <memory>

#include "ORBCefToolsWrapperMT.h"
#include "include/cef_stream.h"

namespace ORBCefResourceTables {

namespace {

// Both tables stay for the process's life: the engine's threads may read them to its end. This one
// is filled and read on the engine's IO thread.
MimeTypeMap& MimeTypes() {
  static MimeTypeMap& types = *new MimeTypeMap();
  return types;
}

// Filled on the host's main thread while the engine's IO thread may be reading, so a table is never
// changed: the next one takes its place.
std::atomic<const UriSchemeMap*>& UriSchemes() {
  static const UriSchemeMap& none = *new UriSchemeMap();
  static std::atomic<const UriSchemeMap*> schemes{&none};
  return schemes;
}

bool IsNamed(CefRefPtr<CefXmlReader> reader, const char* name) {
  return reader->GetLocalName() == CefString(name);
}

// The text behind a start tag; empty if something else follows.
CefString NextText(CefRefPtr<CefXmlReader> reader) {
  reader->MoveToNextNode();
  if (reader->GetType() == XML_NODE_TEXT && reader->HasValue())
    return reader->GetValue();
  return CefString();
}

}  // namespace

CefRefPtr<CefXmlReader> OpenResourceXml(const std::string& relative_path) {
  const std::string path =
      ORBCefToolsWrapperMT::FindFileOnPaths(relative_path, ORBCefToolsWrapperMT::InstallPath());
  if (path.empty())
    return nullptr;
  CefRefPtr<CefStreamReader> stream = CefStreamReader::CreateForFile(path);
  if (!stream)
    return nullptr;
  return CefXmlReader::Create(stream, XML_ENCODING_UTF8, "file://" + path);
}

void ReadMimeTypes(CefRefPtr<CefXmlReader> reader, MimeTypeMap& types) {
  while (reader->MoveToNextNode()) {
    if (!IsNamed(reader, "mimeType"))
      continue;
    const std::string type = reader->GetAttribute("type").ToString();
    const std::string extension = reader->GetAttribute("extension").ToString();
    types.emplace(extension, type);
  }
}

void ReadUriSchemes(CefRefPtr<CefXmlReader> reader, UriSchemeMap& schemes) {
  while (reader->MoveToNextNode()) {
    // What follows are the people of the registry.
    if (IsNamed(reader, "people"))
      return;
    if (!IsNamed(reader, "value"))
      continue;
    const CefString scheme = NextText(reader);
    while (!IsNamed(reader, "description")) reader->MoveToNextNode();
    const CefString description = NextText(reader);
    schemes.emplace(scheme, description);
  }
}

void LoadMimeTypes() {
  if (CefRefPtr<CefXmlReader> reader = OpenResourceXml(kMimeTypesFile))
    ReadMimeTypes(reader, MimeTypes());
}

void LoadUriSchemes() {
  if (!UriSchemeTable().empty())
    return;
  CefRefPtr<CefXmlReader> reader = OpenResourceXml(kUriSchemesFile);
  if (!reader)
    return;
  auto schemes = std::make_unique<UriSchemeMap>();
  ReadUriSchemes(reader, *schemes);
  // An empty table is the one that there was.
  if (!schemes->empty())
    UriSchemes().store(schemes.release(), std::memory_order_release);
}

std::string MimeTypeForExtension(const std::string& extension) {
  if (MimeTypes().empty())
    LoadMimeTypes();
  const auto found = MimeTypes().find(extension);
  return found != MimeTypes().end() ? found->second : kDefaultMimeType;
}

const UriSchemeMap& UriSchemeTable() {
  return *UriSchemes().load(std::memory_order_acquire);
}

}  // namespace ORBCefResourceTables
