// Opens a library by its bare name, as the product must not: shows that the decoys lie where the system looks
// for one.

#include "platform/SharedLibrary.h"

int main(int, char** arguments)
{
    return SharedLibrary(arguments[1], false).load() ? 0 : 1;
}
