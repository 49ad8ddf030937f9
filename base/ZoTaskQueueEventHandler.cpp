#include "base/ZoTaskQueueEventHandler.h"

ZoTaskQueueEventHandler::ZoTaskQueueEventHandler() = default;

ZoTaskQueueEventHandler::~ZoTaskQueueEventHandler() = default;
