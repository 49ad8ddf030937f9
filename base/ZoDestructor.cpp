#include "base/ZoDestructor.h"

// The out-of-line destructor anchors the class's virtual table in the library.
ZoDestructor::~ZoDestructor() = default;
