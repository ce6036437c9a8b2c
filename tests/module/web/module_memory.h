// Included before a source of the module that is linked into tests: what it asks memory of has names of its
// own, so that web/imports.cpp can stand in between.
extern "C" void* malloc(__SIZE_TYPE__) __asm__("module_malloc");
extern "C" void free(void*) __asm__("module_free");
