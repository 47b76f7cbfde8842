// The options of this program's sanitizers.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __asan_default_options();

// What the runtime keeps of its classes for the life of the process: no message to an object has a
// frame of it, only the loading and the first use of a class do.
const char* __lsan_default_suppressions() { return "leak:libobjc.so"; }

// Whole stacks, since Foundation's own frames cannot be walked the fast way.
const char* __asan_default_options() { return "fast_unwind_on_malloc=0:print_suppressions=0"; }
