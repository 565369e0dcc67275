#include "app/cdeskmessageservice.h"
#include "app/cmessagesmodel.h"
#include "app/desklogging.h"
#include "support/testsupport.h"
#include "toolkit/ctablecellmodel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <thread>

TEST(DeskMessageService, ANoteFromAServiceThreadReachesTheModelOnTheGuiThread)
{
    desk::CDeskMessageService service;
    desk::CMessagesModel* model = service.model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::vector<QThread*> threads;
    QObject::connect(model, &QAbstractItemModel::rowsInserted, [&] { threads.push_back(QThread::currentThread()); });
    QString said;
    QObject::connect(&service, &desk::CDeskMessageService::sigMessage,
                     [&](const QString& text, int, bool) { said = text; });

    boost::shared_ptr<nqservice::CMessage> returned;
    std::thread broker([&] {
        returned = service.showQsMsg(QStringLiteral("可用资金不足"), TC::MTD_ORDER, nqservice::ML_ERROR, false, false);
    });
    broker.join();
    ASSERT_TRUE(returned);
    EXPECT_EQ(returned->text, "可用资金不足");
    EXPECT_EQ(returned->level, nqservice::ML_ERROR);
    EXPECT_EQ(model->rowCount(), 0) << "the model changes on the GUI thread only";

    ASSERT_TRUE(testsupport::waitUntil([&] { return model->rowCount() == 1; }));
    ASSERT_EQ(threads.size(), 1u);
    EXPECT_EQ(threads[0], qApp->thread());
    EXPECT_EQ(said, QStringLiteral("可用资金不足"));
    EXPECT_EQ(model->index(0, desk::CMessagesModel::COL_LEVEL).data().toString(), QStringLiteral("错误"));
    EXPECT_EQ(model->index(0, desk::CMessagesModel::COL_TEXT).data().toString(), QStringLiteral("可用资金不足"));
    EXPECT_EQ(model->index(0, desk::CMessagesModel::COL_TEXT).data(WG::CTableCellModel::TextColorKeyRole).toString(),
              QStringLiteral("clr_text_error"));
}

TEST(DeskMessageService, NewestFirstAndTheOldestDropBeyondTheCapacity)
{
    desk::CDeskMessageService service(3);
    desk::CMessagesModel* model = service.model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const nqservice::MsgLevel levels[] = {nqservice::ML_INFO, nqservice::ML_WARNING, nqservice::ML_INFO,
                                          nqservice::ML_WARNING, nqservice::ML_INFO};
    for (int i = 1; i <= 5; ++i) {
        service.showQsMsg(QStringLiteral("第%1条").arg(i), TC::MTD_SYSTEM, levels[i - 1], false, false);
    }
    ASSERT_TRUE(testsupport::waitUntil([&] {
        return model->rowCount() == 3 &&
               model->index(0, desk::CMessagesModel::COL_TEXT).data().toString() == QStringLiteral("第5条");
    }));
    EXPECT_EQ(model->index(1, desk::CMessagesModel::COL_TEXT).data().toString(), QStringLiteral("第4条"));
    EXPECT_EQ(model->index(2, desk::CMessagesModel::COL_TEXT).data().toString(), QStringLiteral("第3条"));
    EXPECT_EQ(model->index(1, desk::CMessagesModel::COL_LEVEL).data().toString(), QStringLiteral("警告"));
    EXPECT_EQ(model->index(0, desk::CMessagesModel::COL_LEVEL).data().toString(), QStringLiteral("信息"));
    EXPECT_EQ(model->index(1, desk::CMessagesModel::COL_TEXT).data(WG::CTableCellModel::TextColorKeyRole).toString(),
              QStringLiteral("clr_text_warning"));
    EXPECT_NE(model->message(0).messageId, model->message(1).messageId);
    EXPECT_EQ(model->headerData(desk::CMessagesModel::COL_TIME, Qt::Horizontal).toString(), QStringLiteral("时间"));
}

TEST(DeskMessageService, EveryNoteIsLogged)
{
    QTemporaryDir dir;
    QString error;
    ASSERT_TRUE(desk::startFileLogging(dir.path(), &error)) << error.toStdString();
    {
        desk::CDeskMessageService service;
        service.showQsMsg(QStringLiteral("委托价格超出涨跌停范围"), TC::MTD_ORDER, nqservice::ML_ERROR, false, false);
        service.showQsMsg(QStringLiteral("交易已恢复"), TC::MTD_OPERATION, nqservice::ML_INFO, false, false);
    }
    desk::stopFileLogging();
    QFile file(desk::logFilePath(dir.path()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.contains(QStringLiteral("ERROR")) && text.contains(QStringLiteral("委托价格超出涨跌停范围")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("[信息] 交易已恢复"))) << text.toStdString();
}
