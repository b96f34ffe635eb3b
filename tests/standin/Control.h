// The control interface of the stand-in, resolved from the library that the engine binding has
// loaded.
//
// Any thread, in a process of the test's own.
#ifndef ORBCEF_TESTS_STANDIN_CONTROL_H
#define ORBCEF_TESTS_STANDIN_CONTROL_H

#include <string>
#include <vector>

#include "include/internal/cef_types.h"
#include "orbcef_standin.h"

namespace control {

// Far longer than anything takes that does happen.
constexpr int kLimit = 20'000;

void Fail(const char* operation, int times = 1);
int Count(const char* event);
std::vector<std::string> Texts(const char* event);
// The last text of the event; empty without one.
std::string Last(const char* event);
bool Wait(const char* event, int count = 1, int milliseconds = kLimit);
void Hold(cef_thread_id_t thread);
void Resume(cef_thread_id_t thread);
bool Settle(cef_thread_id_t thread);
// UI and IO one after the other, until what they had to do is done.
void SettleAll();
int Living(const char* class_name = nullptr);
void OnPage(void (*page)(void* data), void* data);
bool Native(const char* name, const std::vector<const char*>& arguments = {});

// A callback to play. Fields are set by name; Play() writes the answers back.
struct Callback : orbcef_standin_call {
  explicit Callback(const char* its_name, int its_thread = TID_UI);

  Callback& Null(int argument);
  Callback& Text(int index, const char* value);
  Callback& Number(int index, int value);
  // Of a process message.
  Callback& Fields(const std::vector<const char*>& values);

  // False without such a callback, browser or handler.
  bool Play();

 private:
  std::vector<const char*> _fields;
};

}  // namespace control

#endif  // ORBCEF_TESTS_STANDIN_CONTROL_H
