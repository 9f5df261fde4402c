/* A library that stands for one planted in the program's folder. */
__declspec(dllexport) int PlantedProbe(void) { return 42; }
