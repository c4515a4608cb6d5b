// What ThreadSanitizer has to know in a build under it; nothing in any other.

#if defined(__SANITIZE_THREAD__)
#define ORBINEL_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ORBINEL_THREAD_SANITIZER
#endif
#endif

#ifdef ORBINEL_THREAD_SANITIZER
/// The HTTP library and GLib come compiled without the sanitizer, which therefore misses how they keep their own
/// threads apart. This leaves out the memory accesses that they make themselves and nothing of what our handlers do.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "called_from_lib:libcpp-httplib\n"
           "called_from_lib:libglib-2.0\n";
}
#endif
