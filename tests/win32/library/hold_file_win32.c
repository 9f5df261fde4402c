/* Another program holding a file: opens the file named by its first
   argument sharing nothing, holds it for the milliseconds of its second,
   then ends. Exit code 2 when the file could not be opened. */
#include <wchar.h>
#include <windows.h>
/* After windows.h: */
#include <shellapi.h>

int main(void) {
  int count = 0;
  wchar_t** args = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!args || count < 3) return 1;
  const HANDLE file =
      CreateFileW(args[1], GENERIC_READ | GENERIC_WRITE, 0, NULL, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, NULL);
  if (file == INVALID_HANDLE_VALUE) return 2;
  Sleep((DWORD)wcstoul(args[2], NULL, 10));
  CloseHandle(file);
  return 0;
}
