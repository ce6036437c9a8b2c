// What the compiler's library calls on ARM for a division by zero. Its own versions raise a signal, which
// would be one more import of the finished file. The module divides by nothing that can be zero.

extern "C" {

int __aeabi_idiv0(int result);
long long __aeabi_ldiv0(long long result);

// The result is what the division returns.
int __aeabi_idiv0(int result) {
    return result;
}

long long __aeabi_ldiv0(long long result) {
    return result;
}

}  // extern "C"
