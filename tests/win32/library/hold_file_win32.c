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
  /* The test that started this one looks at the file meanwhile, sharing
     everything; while it does, the file cannot be had alone: tried again. */
  HANDLE file = INVALID_HANDLE_VALUE;
  for (int tries = 0; tries < 500 && file == INVALID_HANDLE_VALUE; ++tries) {
    file = CreateFileW(args[1], GENERIC_READ | GENERIC_WRITE, 0, NULL, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                       NULL);
    if (file == INVALID_HANDLE_VALUE && GetLastError() != ERROR_SHARING_VIOLATION) return 2;
    if (file == INVALID_HANDLE_VALUE) Sleep(10);
  }
  if (file == INVALID_HANDLE_VALUE) return 2;
  Sleep((DWORD)wcstoul(args[2], NULL, 10));
  CloseHandle(file);
  return 0;
}
