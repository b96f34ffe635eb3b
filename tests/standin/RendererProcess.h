// Tests in a render process: the program starts itself with the command line of the engine's
// sub-processes, enters the module's table, and runs a part of the test while the page is there.
#ifndef ORBCEF_TESTS_STANDIN_RENDERER_PROCESS_H
#define ORBCEF_TESTS_STANDIN_RENDERER_PROCESS_H

#include <string>

#include <gmock/gmock.h>

namespace renderer_process {

// A piece of a test that runs on the renderer's thread. Objects are static: the process finds its
// part by name before main() runs any test.
class Part {
 public:
  Part(const char* name, void (*body)());
  const std::string& Name() const { return _name; }
  void RunBody() const { _body(); }

 private:
  const std::string _name;
  void (*const _body)();
};

// Runs the part in a render process and expects it to end well. `log` describes its standard error.
void RunInRenderer(const Part& part, const testing::Matcher<const std::string&>& log = testing::_,
                   int line = __builtin_LINE());

// The sub-process's own main(). Negative if this process is none.
int Serve(int argc, char** argv);

}  // namespace renderer_process

#endif  // ORBCEF_TESTS_STANDIN_RENDERER_PROCESS_H
