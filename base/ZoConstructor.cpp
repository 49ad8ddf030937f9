#include "base/ZoConstructor.h"

// The out-of-line destructor anchors the class's virtual table in the library.
ZoConstructor::~ZoConstructor() = default;
