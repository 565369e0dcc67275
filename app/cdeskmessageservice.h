// The desk's message service: showQsMsg may be called from any thread; it logs
// the note at once and hands it to the GUI thread (queued), where the message
// area's model takes it. It touches no widget. Create it on the GUI thread and
// install it as utils::CManualSingletonT<TC::CMsgService>; destroy it only after
// every service that may still call it has stopped.
#pragma once

#include "seam/trading.h"

#include <QObject>
#include <QString>

#include <atomic>

namespace desk {

class CMessagesModel;

class CDeskMessageService : public QObject, public TC::CMsgService {
    Q_OBJECT
public:
    explicit CDeskMessageService(int capacity = 500, QObject* parent = nullptr);
    ~CDeskMessageService() override;

    boost::shared_ptr<nqservice::CMessage> showQsMsg(const QString& text, TC::EMsgTypeDef type,
                                                     nqservice::MsgLevel level, bool modal, bool sound) override;

    // The notes so far, newest first; lives as long as the service.
    CMessagesModel* model() const { return m_model; }

signals:
    // On the GUI thread, after the model took the note.
    void sigMessage(const QString& text, int level, bool modal);

private:
    CMessagesModel* m_model;
    std::atomic<long long> m_nextId{1};
};

}  // namespace desk
