// ads_test_module: a library for the loader tests, with one exported function.
#ifdef _WIN32
#define ADS_TEST_EXPORT __declspec(dllexport)
#else
#define ADS_TEST_EXPORT __attribute__((visibility("default")))
#endif

extern "C" ADS_TEST_EXPORT int ads_test_module_answer() { return 42; }
