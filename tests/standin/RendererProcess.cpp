#include "RendererProcess.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

#include <cstdlib>
#include <cstring>
#include <map>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "Control.h"
#include "Environment.h"
#include "Host.h"

namespace renderer_process {

namespace {

constexpr char kRendererSwitch[] = "--type=renderer";
// Names the part to run.
constexpr char kPartVariable[] = "ORBCEF_STANDIN_PART";

std::map<std::string, const Part*>& Parts() {
  static std::map<std::string, const Part*> parts;
  return parts;
}

std::string OwnProgram() {
  char path[4096];
#if defined(_WIN32)
  const auto length = GetModuleFileNameA(nullptr, path, sizeof(path));
#else
  const auto length = readlink("/proc/self/exe", path, sizeof(path));
#endif
  return length > 0 ? std::string(path, static_cast<size_t>(length)) : std::string();
}

bool g_has_run = false;

void RunPart(void* part) {
  g_has_run = true;
  static_cast<const Part*>(part)->RunBody();
}

// A test is needed for expectations to count.
class Page : public testing::Test {
 public:
  explicit Page(const Part& part) : _part(part) {}
  void TestBody() override {
    standin_host::Host host;
    host.root.Write("webapps/ORBCefBindings/cef_extensions.js", "var xocef;");
    control::OnPage(&RunPart, const_cast<Part*>(&_part));
    EXPECT_EQ(host.table->execute_subprocess(host.table, 0, nullptr), 0);
    EXPECT_TRUE(g_has_run);
  }

 private:
  const Part& _part;
};

}  // namespace

Part::Part(const char* name, void (*body)()) : _name(name), _body(body) {
  Parts()[_name] = this;
}

void RunInRenderer(const Part& part, const testing::Matcher<const std::string&>& log, int line) {
  SCOPED_TRACE("in the render process of line " + std::to_string(line));
  SetEnvironment(kPartVariable, part.Name().c_str());
  const child_process::Ending ending = child_process::Run(OwnProgram(), kRendererSwitch);
  SetEnvironment(kPartVariable, nullptr);
  EXPECT_EQ(ending.code, 0) << ending.output << ending.errors;
  EXPECT_THAT(ending.errors, log);
}

int Serve(int argc, char** argv) {
  const char* const name = std::getenv(kPartVariable);
  if (argc != 2 || std::strcmp(argv[1], kRendererSwitch) != 0 || !name)
    return -1;
  const auto found = Parts().find(name);
  if (found == Parts().end())
    return 1;
  standin_host::EndAfterLimit();
  const Part& part = *found->second;
  testing::RegisterTest("RenderProcess", name, nullptr, nullptr, __FILE__, __LINE__,
                        [&part]() -> Page* { return new Page(part); });
  testing::GTEST_FLAG(filter) = "RenderProcess.*";
  return RUN_ALL_TESTS();
}

}  // namespace renderer_process
