// The run-time error that the platform services raise (the screen service
// and the common dialog wrapper): a number, the source that raised it and a
// description. The source is the executable's name followed by the member's
// tag, as "quillmere.cScreen.GetFont".
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace qm {

class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(std::int32_t number, std::string source, std::string description)
      : std::runtime_error(description),
        number_(number),
        source_(std::move(source)),
        description_(std::move(description)) {}

  std::int32_t Number() const { return number_; }
  const std::string& Source() const { return source_; }
  const std::string& Description() const { return description_; }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

// Numbers the language's run time gives its own errors.
inline constexpr std::int32_t kErrOutOfMemory = 7;
inline constexpr std::int32_t kErrSubscriptOutOfRange = 9;

}  // namespace qm
