// Records every message box the core shows and answers from a script.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/prompts.h"

namespace qm::test {

struct ShownPrompt {
  std::string text;
  PromptIcon icon;
  PromptButtons buttons;
};

class FakePrompts final : public Prompts {
 public:
  PromptAnswer Show(std::string_view text, PromptIcon icon, PromptButtons buttons) override {
    shown.push_back({std::string(text), icon, buttons});
    if (buttons == PromptButtons::Ok) return PromptAnswer::Ok;
    if (answers.empty()) return PromptAnswer::No;
    PromptAnswer a = answers.front();
    answers.pop_front();
    return a;
  }

  // Answered at once: never seen open.
  bool IsOpen() const override { return false; }
  void BringToFront() override {}

  std::vector<ShownPrompt> shown;
  // Answers for Yes/No boxes, in order; No when none is left.
  std::deque<PromptAnswer> answers;
};

class CountingEventPump final : public EventPump {
 public:
  void DoEvents() override {
    ++count;
    if (onEvents) {
      // The events run once: what they do may itself pump again.
      auto events = std::move(onEvents);
      onEvents = nullptr;
      events();
    }
  }
  int count = 0;
  // What the waiting events do, run at the next DoEvents.
  std::function<void()> onEvents;
};

}  // namespace qm::test
