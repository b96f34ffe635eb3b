// The surroundings of a test of renderer code: a host whose thread guards pass, and a page with a
// main frame and a sub-frame.
//
// What the module reads once per process (the installation roots, the module map) is alike for all
// tests of this fixture. A test that needs another value runs in a fresh process.

#ifndef V8_DOUBLES_RENDERER_FIXTURE_H
#define V8_DOUBLES_RENDERER_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"
#include "v8_doubles/PageDoubles.h"
#include "v8_doubles/V8ContextDouble.h"
#include "v8_doubles/V8Values.h"

namespace v8_doubles {

class RendererTest : public testing::Test {
 protected:
  RendererTest() {
    tools.module_map = "{\"a\":\n[1]}\n";
    sub_frame->parent = main_frame;
  }

  // The names of the messages that went through the main frame, in their order.
  std::vector<std::string> SentNames() const {
    std::vector<std::string> names;
    for (const SentMessage& message : main_frame->sent) {
      names.push_back(message.Name());
    }
    return names;
  }

  FakeTools tools;
  CefRefPtr<FrameDouble> main_frame = new FrameDouble(true, 4294967297, "top", "xortv://webapps/a");
  CefRefPtr<FrameDouble> sub_frame = new FrameDouble(false, 42, "inner", "xortv://webapps/b");
  CefRefPtr<BrowserDouble> browser = new BrowserDouble(7, main_frame);
  CefRefPtr<V8ContextDouble> context = new V8ContextDouble(browser, main_frame);
};

}  // namespace v8_doubles

#endif  // V8_DOUBLES_RENDERER_FIXTURE_H
