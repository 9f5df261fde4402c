// Started by the application test from a copy in a folder of its choosing:
// writes what the application object says about the running program to
// "probe.txt" beside itself, one item a line.
#include "platform/application_win32.h"
#include "platform/file_system.h"

int main() {
  const std::string folder = qm::win32::ProgramFolder();
  const std::string text = folder + "\n" + qm::win32::ExecutableName();
  return qm::SystemFileSystem().WriteAll(folder + "\\probe.txt", text) ? 0 : 1;
}
