// Message boxes: every text the program shows the user goes through here.
// The boxes are titled with the application's title, "Quillmere". Texts are
// UTF-8 (a category name, which is Windows-1252, is converted before it
// goes into a text).
#pragma once

#include <string_view>

namespace qm {

inline constexpr std::string_view kAppTitle = "Quillmere";

enum class PromptIcon { Exclamation, Critical, Question, Information };
enum class PromptButtons { Ok, YesNo };
enum class PromptAnswer { Ok, Yes, No };

class Prompts {
 public:
  virtual ~Prompts() = default;
  // Shows the box and waits for the answer (a nested event loop on Windows).
  virtual PromptAnswer Show(std::string_view text, PromptIcon icon, PromptButtons buttons) = 0;
  // True while one of the program's boxes is open (its nested loop runs).
  virtual bool IsOpen() const = 0;
  // Brings the open box, if any, to the front.
  virtual void BringToFront() = 0;
};

// Lets the window-system events that are waiting run, as a long routine
// does between steps ("let pending window events run").
class EventPump {
 public:
  virtual ~EventPump() = default;
  virtual void DoEvents() = 0;
};

}  // namespace qm
