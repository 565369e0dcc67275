#include "toolkit/invokehelper.h"

#include <QMetaObject>

namespace TC {

void InvokeHelper::invokeLater(QObject* context, std::function<void()> work)
{
    if (context == nullptr || !work) {
        return;
    }
    QMetaObject::invokeMethod(context, std::move(work), Qt::QueuedConnection);
}

}  // namespace TC
