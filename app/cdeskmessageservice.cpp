#include "app/cdeskmessageservice.h"

#include "app/cmessagesmodel.h"

#include "seam/ctimeservice.h"
#include "seam/logger.h"

#include <QApplication>
#include <QMetaObject>

#include <boost/make_shared.hpp>

namespace desk {

CDeskMessageService::CDeskMessageService(int capacity, QObject* parent)
    : QObject(parent), m_model(new CMessagesModel(capacity, this))
{
}

CDeskMessageService::~CDeskMessageService() = default;

boost::shared_ptr<nqservice::CMessage> CDeskMessageService::showQsMsg(const QString& text, TC::EMsgTypeDef type,
                                                                      nqservice::MsgLevel level, bool modal,
                                                                      bool sound)
{
    auto message = boost::make_shared<nqservice::CMessage>();
    message->messageId = std::to_string(m_nextId.fetch_add(1));
    message->text = text.toStdString();
    message->type = type;
    message->level = level;
    message->time = TC::getTimeService()->currentTime();

    const std::string line = "message [" + CMessagesModel::levelText(level).toStdString() + "] " + message->text;
    if (level == nqservice::ML_ERROR) {
        NQ_LOG_ERROR(line);
    } else {
        NQ_LOG_INFO(line);
    }
    // The caller may be a service thread: the model is reached on the GUI thread only.
    const nqservice::CMessage copy = *message;
    QMetaObject::invokeMethod(
        this,
        [this, copy, modal, sound] {
            m_model->addMessage(copy);
            if (sound) {
                QApplication::beep();
            }
            emit sigMessage(QString::fromStdString(copy.text), copy.level, modal);
        },
        Qt::QueuedConnection);
    return message;
}

}  // namespace desk
