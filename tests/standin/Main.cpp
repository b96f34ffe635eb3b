// The tests of the module on the stand-in; and, started as one, a render process of theirs.
#include <gmock/gmock.h>

#include "RendererProcess.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const int status = renderer_process::Serve(argc, argv);
  return status >= 0 ? status : RUN_ALL_TESTS();
}
