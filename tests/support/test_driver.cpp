// A debugger driver library for the tests: it exports what its build says,
// so that the plug-in and orvhost tell its kind by its exports alone.
#if defined(_WIN32)
#define DRIVER_EXPORT extern "C" __declspec(dllexport)
#else
#define DRIVER_EXPORT extern "C" __attribute__((visibility("default")))
#endif

#ifdef EXPORT_AG_INIT
DRIVER_EXPORT int AG_Init(int, void*) { return 0; }
#endif
#ifdef EXPORT_RDI
DRIVER_EXPORT void* WinRDI_GetRDIProcVec(void) { return nullptr; }
#endif
#ifdef EXPORT_JDI
DRIVER_EXPORT void* GetJDI(void) { return nullptr; }
#endif
// Every library exports something, so that the one that proves no kind
// still loads.
DRIVER_EXPORT int TestDriverVersion(void) { return 1; }
