// What a bench does with a loaded page, the same for both programs. A workload counts and checks
// what comes back: what is lost, changed or out of order makes it fail.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Bench.h"

namespace bench {

// A view as a workload sees it.
class View {
 public:
  virtual ~View() = default;
  // Runs a script in the page. Any thread.
  virtual void Execute(const std::string& code) = 0;
};

class Workload {
 public:
  // Names and what was measured.
  using Values = std::vector<std::pair<std::string, double>>;

  virtual ~Workload() = default;

  // Null without a workload of that name.
  static std::unique_ptr<Workload> Make(const Options& options);

  // The page stood at this time. An engine thread.
  virtual void Loaded(int64_t) {}
  // Main thread, after the page has loaded. False if nothing is to be waited for.
  virtual bool Begin(View& view) = 0;
  // A string of the page, on an engine thread. Answers whether it was the last one.
  virtual bool Take(View& view, std::string_view text) = 0;

  // After the end. What went wrong, or nothing.
  virtual std::string Failure() const = 0;
  virtual Values Results() const = 0;
};

}  // namespace bench
