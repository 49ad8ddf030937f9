// The library's exported instantiation of ZoThread, the base of every ZoWorkerThreadBase.
#include "base/ZoThread.h"

#include "base/ZoWorkerThreadBase.h"

template class ZoThread<ZoWorkerThreadBase, ZoThreadPolicyMFC>;
