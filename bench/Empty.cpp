// Nothing: the yardstick of loading a library. The function only tells where it lies.
extern "C" void nothing() {}
