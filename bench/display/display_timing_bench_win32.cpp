// Measures, for display durations of 1, 5, 16, 50 and 500 ms, how long a
// phrase really stays on the screen: from the end of the interval tick
// (the phrase painted) to the moment it is hidden and repainted away (the
// display tick, or later, once the compositor has presented a frame
// holding it), through the real overlay, timers and message loop; and,
// where the system reports them, the frames presented meanwhile.
// Then the raw period of the millisecond timer alone. Prints mean, min
// and max per duration. Last, what one interval tick and display tick cost
// (called directly) for a short phrase and for phrases of 1 and 10 MB, and
// what the overlay alone costs when handed a megabyte uncut.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "../../tests/support/flasher_doubles.h"
#include "display/message_window_win32.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// Prints the figures in milliseconds of samples taken for `asked` (a
// duration in ms, or with another unit a length).
void Print(const char* what, int asked, const std::vector<double>& ms, const char* unit = "ms") {
  if (ms.empty()) {
    std::printf("%-18s %5d %s: no sample\n", what, asked, unit);
    return;
  }
  const double mean = std::accumulate(ms.begin(), ms.end(), 0.0) / ms.size();
  const auto [lo, hi] = std::minmax_element(ms.begin(), ms.end());
  std::printf("%-18s %5d %s: mean %8.3f  min %8.3f  max %8.3f  (%zu samples)\n", what, asked, unit, mean, *lo,
              *hi, ms.size());
}

double Millis(Clock::duration d) {
  return std::chrono::duration<double, std::milli>(d).count();
}

// What `count` phrases of the asked duration did: their times on the
// screen, and the frames the compositor presented meanwhile (empty where it
// reports none).
struct Flashes {
  std::vector<double> ms;
  std::vector<double> frames;
};

Flashes Flash(qm::win32::MessageLoop& loop, qm::win32::MessageWindow& window, int askedMs, int count) {
  qm::frmMessage& form = window.Form();
  const qm::win32::CompositorClock compositor;
  Flashes flashes;
  Clock::time_point shownAt{};
  std::optional<std::uint64_t> framesAtShow;
  bool shown = false;
  form.TimerFrequency().SetTick([&] {
    form.TimerFrequency_Timer();
    shownAt = Clock::now();
    framesAtShow = compositor.PresentedFrames();
    shown = true;
  });
  form.TimerFrequency().SetInterval(20ms);
  form.TimerDisplayLength().SetInterval(std::chrono::milliseconds(askedMs));
  form.bStopped = false;
  form.Begin();
  // Asked after every message and handler: the phrase is gone as soon as
  // the handler that hid it returns, whichever timer that was.
  loop.RunUntil(
      [&] {
        if (shown && !window.Overlay().LabelVisible()) {
          flashes.ms.push_back(Millis(Clock::now() - shownAt));
          const auto framesNow = compositor.PresentedFrames();
          if (framesAtShow && framesNow)
            flashes.frames.push_back(static_cast<double>(*framesNow - *framesAtShow));
          shown = false;
        }
        return static_cast<int>(flashes.ms.size()) >= count;
      },
      std::chrono::milliseconds((askedMs + 100) * count + 5000));
  form.bStopped = true;
  form.TimerFrequency().SetEnabled(false);
  form.TimerDisplayLength().SetEnabled(false);
  return flashes;
}

std::vector<double> RawPeriods(qm::win32::MessageLoop& loop, int askedMs, int count) {
  qm::win32::PreciseTimer timer(loop, std::chrono::milliseconds(askedMs));
  std::vector<double> periods;
  Clock::time_point last = Clock::now();
  timer.SetTick([&] {
    const auto now = Clock::now();
    periods.push_back(Millis(now - last));
    last = now;
  });
  last = Clock::now();
  timer.SetEnabled(true);
  loop.RunUntil([&] { return static_cast<int>(periods.size()) >= count; },
                std::chrono::milliseconds((askedMs + 50) * count + 5000));
  timer.SetEnabled(false);
  return periods;
}

// The cost of one interval tick and its display tick, called directly.
std::vector<double> TickCosts(qm::win32::MessageLoop& loop, qm::frmMessage& form, const std::string& phrase,
                              int count) {
  form.MessageList = qm::PhraseList{{phrase}};
  form.bStopped = false;
  std::vector<double> costs;
  for (int i = 0; i < count; ++i) {
    const auto start = Clock::now();
    form.TimerFrequency_Timer();
    form.TimerDisplayLength_Timer();
    costs.push_back(Millis(Clock::now() - start));
    loop.RunFor(0ms);
  }
  form.bStopped = true;
  form.TimerFrequency().SetEnabled(false);
  form.TimerDisplayLength().SetEnabled(false);
  return costs;
}

}  // namespace

int main() {
  qm::test::ClosedHost host;
  qm::win32::MessageLoop loop;
  qm::win32::MessageWindow window(host, loop);
  qm::frmMessage& form = window.Form();
  form.SetLabelFont({"Arial", 28, true, false, false, false});
  form.SetLabelColor(qm::Rgb(200, 0, 0));
  form.MessageList = qm::PhraseList{{"Timing", "the phrase on the screen"}};
  form.HideLabel();
  form.Show();

  {
    qm::win32::PreciseTimer probe(loop);
    std::printf("millisecond timer: %s\n", probe.HighResolution()
                                               ? "high-resolution waitable timer"
                                               : "waitable timer with the system timer at 1 ms");
  }
  {
    const auto frames = qm::win32::CompositorClock().PresentedFrames();
    const auto state = qm::win32::ShellAttention().UserNotificationState();
    std::printf("desktop compositor: %s; the shell's user notification state: %s\n",
                frames ? "presents frames" : "none reported",
                state ? std::to_string(static_cast<int>(*state)).c_str() : "not reported");
  }
  std::printf(
      "time on the screen (interval tick painted -> phrase hidden), and the frames the compositor\n"
      "presented meanwhile where the system reports them:\n");
  const int durations[] = {1, 5, 16, 50, 500};
  bool framesReported = false;
  for (int ms : durations) {
    const Flashes flashes = Flash(loop, window, ms, ms >= 500 ? 10 : 50);
    Print("on screen", ms, flashes.ms);
    if (!flashes.frames.empty()) {
      Print("frames presented", ms, flashes.frames);
      framesReported = true;
    }
  }
  if (!framesReported)
    std::printf(
        "frames presented: the system reports none (no desktop compositor), so each phrase goes at the\n"
        "time asked\n");
  std::printf("raw period of the millisecond timer:\n");
  for (int ms : durations) Print("timer period", ms, RawPeriods(loop, ms, ms >= 500 ? 10 : 100));

  std::printf("one tick and its display tick, by the phrase's length in characters:\n");
  for (int length : {20, 1 << 20, 10 << 20})
    Print("tick", length, TickCosts(loop, form, std::string(static_cast<std::size_t>(length), 'W'), 20),
          "chars");
  {
    const std::string megabyte(1 << 20, 'W');
    std::vector<double> costs;
    for (int i = 0; i < 20; ++i) {
      const auto start = Clock::now();
      window.Overlay().SetCaption(megabyte);
      costs.push_back(Millis(Clock::now() - start));
    }
    Print("overlay, uncut", 1 << 20, costs, "chars");
  }
  std::fflush(stdout);
  return 0;
}
