/// \file
/// Destroys singletons that were made without a controller, which nobody else does.
#pragma once

namespace ovra::tests {

template <class T>
void destroySingleton()
{
    T& singleton = T::instance();
    auto& pointer = singleton.instancePointer();
    delete &singleton;
    pointer = nullptr;
}

} // namespace ovra::tests
