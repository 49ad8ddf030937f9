#include "base/ZoObservableMessage.h"

ZoObservableMessage::ZoObservableMessage(EMessageType type, void* userData) : m_type(type), m_userData(userData) {}
