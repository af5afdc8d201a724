#pragma once
// The GUI toolkit's lazily created singleton for module objects: the host's
// singleton under the toolkit's name. Instance() may be called from any thread
// (a search task, the GUI thread); the object lives until the library that
// instantiated the template is unloaded.
#include "Base/CSingleton.h"

namespace VantorGUIToolkit {

template <typename T>
class CObjectSingleton : public Base::CSingleton<T> {
public:
    CObjectSingleton() = delete;
};

} // namespace VantorGUIToolkit
