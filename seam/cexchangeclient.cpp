#include "seam/cexchangeclient.h"

#include <QMetaType>

namespace TC {

CExchangeClient::CExchangeClient(QObject* parent) : QObject(parent)
{
    // The trading date travels by queued connections too.
    qRegisterMetaType<std::string>("std::string");
}

CExchangeClient::~CExchangeClient() = default;

}  // namespace TC
