#include "ViewEvents.h"

#include <utility>

#include "Records.h"

namespace host {
namespace {

struct AuthReleaser {
  void operator()(orbcefauthcallback_c* callback) const { callback->release(callback); }
};

}  // namespace

struct ViewEvents::Slots {
  using Self = orbcefbrowserevents_c*;

  static ViewEvents* Of(Self self) { return static_cast<ViewEvents*>(self->instance); }

  static void AddRef(Self self) { ++Of(self)->_references; }

  static void Release(Self self) { Releaser()(Of(self)); }

  static void State(Self self, int32_t state) {
    Of(self)->Tell([state](ViewListener& listener) { listener.OnState(state); });
  }

  static void V8Context(Self self, uint8_t created) {
    Of(self)->Tell([created](ViewListener& listener) { listener.OnV8Context(created != 0); });
  }

  static void Strings(Self self, const orbcefstring_c* const* strings, int32_t count) {
    std::vector<std::string> texts;
    for (int32_t i = 0; i < count; ++i) {
      texts.push_back(TextOf(strings[i]));
    }
    Of(self)->Tell(
        [texts = std::move(texts)](ViewListener& listener) { listener.OnStrings(texts); });
  }

  static void Title(Self self, const orbcefstring_c* title) {
    Of(self)->Tell([text = TextOf(title)](ViewListener& listener) { listener.OnTitle(text); });
  }

  static void Address(Self self, const orbcefstring_c* url) {
    Of(self)->Tell([text = TextOf(url)](ViewListener& listener) { listener.OnAddress(text); });
  }

  static void Download(Self self, uint32_t id, int64_t received, int64_t total, int64_t speed,
                       uint8_t complete) {
    Of(self)->Tell([=](ViewListener& listener) {
      listener.OnDownload(id, received, total, speed, complete != 0);
    });
  }

  static void Loading(Self self, uint8_t loading, const orbcefstring_c* url) {
    Of(self)->Tell([loading, text = TextOf(url)](ViewListener& listener) {
      listener.OnLoading(loading != 0, text);
    });
  }

  static void DocumentSize(Self self, int32_t width, int32_t height) {
    Of(self)->Tell([=](ViewListener& listener) { listener.OnDocumentSize(width, height); });
  }

  static void Console(Self self, const orbcefstring_c* message, const orbcefstring_c* source,
                      int32_t line) {
    Of(self)->Tell([text = TextOf(message), from = TextOf(source), line](ViewListener& listener) {
      listener.OnConsole(text, from, line);
    });
  }

  static void Zoom(Self self, double change) {
    Of(self)->Tell([change](ViewListener& listener) { listener.OnZoom(change); });
  }

  static void RecordData(Self self, const orbcefstring_c* data) {
    Of(self)->Tell([text = TextOf(data)](ViewListener& listener) { listener.OnRecordData(text); });
  }

  static void Authentication(Self self, const orbcefstring_c* origin, uint8_t proxy,
                             const orbcefstring_c* host, int32_t port,
                             orbcefauthcallback_c* callback) {
    // The answer comes later, on the main thread, so the challenge needs a reference of its own.
    callback->add_ref(callback);
    const std::shared_ptr<orbcefauthcallback_c> kept(callback, AuthReleaser());
    Of(self)->Tell(
        [kept, url = TextOf(origin), proxy, name = TextOf(host), port](ViewListener& listener) {
          listener.OnAuthentication(url, proxy != 0, name, port, kept.get());
        });
  }
};

ViewEvents::Pointer ViewEvents::Make(MainThread& main_thread,
                                     std::weak_ptr<ViewListener> listener) {
  return Pointer(new ViewEvents(main_thread, std::move(listener)));
}

ViewEvents::ViewEvents(MainThread& main_thread, std::weak_ptr<ViewListener> listener)
    : _table{this,
             &Slots::AddRef,
             &Slots::Release,
             &Slots::State,
             &Slots::V8Context,
             &Slots::Strings,
             &Slots::Title,
             &Slots::Address,
             &Slots::Download,
             &Slots::Loading,
             nullptr,
             &Slots::DocumentSize,
             &Slots::Console,
             &Slots::Zoom,
             &Slots::RecordData,
             &Slots::Authentication},
      _main_thread(main_thread),
      _listener(std::move(listener)) {}

void ViewEvents::Releaser::operator()(ViewEvents* events) const {
  if (--events->_references == 0) {
    delete events;
  }
}

void ViewEvents::Tell(std::function<void(ViewListener&)> event) {
  _main_thread.Post([listener = _listener, event = std::move(event)] {
    if (const std::shared_ptr<ViewListener> alive = listener.lock()) {
      event(*alive);
    }
  });
}

}  // namespace host
