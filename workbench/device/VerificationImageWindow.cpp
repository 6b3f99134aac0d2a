#include "VerificationImageWindow.h"

#include "AccountRequest.h"
#include "CNetLoginTask.h"
#include "WorkPool.h"
#include "ui_VerificationImageWindow.h"

#include <QCloseEvent>
#include <QJsonObject>
#include <QMouseEvent>
#include <QTimer>
#include <QtConcurrent>

namespace {
// Presses above this line fall on the title bar and move the window.
constexpr int kTitleBarHeight = 33;
} // namespace

VerificationImageWindow::VerificationImageWindow(const QString& nationCode, const QString& mobile, QWidget* parent)
    : QWidget(parent), ui(new Ui::VerificationImageWindow), m_strNationCode(nationCode), m_strMobile(mobile)
{
    ui->setupUi(this);
    ui->titleBar->setAttribute(Qt::WA_StyledBackground);
    ui->contentWidget->setAttribute(Qt::WA_StyledBackground);
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_TranslucentBackground);
    connect(&m_watcher, &QFutureWatcher<StructFetchResult>::finished, this, &VerificationImageWindow::RecvReply);
    on_changeBtn_clicked();
}

VerificationImageWindow::~VerificationImageWindow()
{
    // The fetch holds no pointer to us, but its result must not arrive after we are gone.
    m_watcher.disconnect(this);
    delete ui;
}

VerificationImageWindow::StructFetchResult VerificationImageWindow::Fetch(const QString& nationCode,
                                                                          const QString& mobile)
{
    const QJsonObject parameters{{"nation-code", nationCode}, {"mobile", mobile}};
    const StructAccountReply reply = AccountRequest::Run(CNetLoginTask::RequestImageCode, parameters);
    StructFetchResult result;
    if (reply.bHasCode)
        result.strCode = reply.strCode;
    const QJsonObject& data = reply.objData;
    if (data.contains(QLatin1String("imgid")) && data.contains(QLatin1String("image")) &&
        data.contains(QLatin1String("label"))) {
        result.strImgId = data.value(QLatin1String("imgid")).toString();
        result.strLabel = data.value(QLatin1String("label")).toString();
        result.image.loadFromData(QByteArray::fromBase64(data.value(QLatin1String("image")).toString().toLatin1()),
                                  "jpeg");
    }
    return result;
}

void VerificationImageWindow::on_closeBtn_clicked()
{
    close();
}

void VerificationImageWindow::RecvReply()
{
    const StructFetchResult result = m_watcher.result();
    ui->changeBtn->setEnabled(true);
    if (result.strCode != QLatin1String("0")) {
        ui->verificationImageLabel->setText(tr("获取验证码图片失败"));
        ui->confirmBtn->setEnabled(false);
        return;
    }
    m_strImgId = result.strImgId;
    ui->confirmBtn->setEnabled(true);
    ui->verificationImageLabel->setText(QString());
    const QPixmap pixmap = QPixmap::fromImage(result.image);
    ui->verificationImageLabel->setPixmap(
        pixmap.isNull()
            ? QPixmap()
            : pixmap.scaled(ui->verificationImageLabel->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    ui->hintLabel->setText(result.strLabel);
    ui->hintLabel->show();
}

void VerificationImageWindow::on_confirmBtn_clicked()
{
    m_strEnteredCode = ui->inputLineEdit->text();
    close();
}

void VerificationImageWindow::on_cancelBtn_clicked()
{
    ui->closeBtn->click();
}

void VerificationImageWindow::on_changeBtn_clicked()
{
    ui->changeBtn->setEnabled(false);
    ui->confirmBtn->setEnabled(false);
    ui->hintLabel->hide();
    ui->verificationImageLabel->clear();
    ui->verificationImageLabel->setText(tr("正在获取验证码图片..."));
    m_watcher.setFuture(
        QtConcurrent::run(WorkPool::Instance(), &VerificationImageWindow::Fetch, m_strNationCode, m_strMobile));
}

void VerificationImageWindow::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    Q_EMIT SignalClose();
}

void VerificationImageWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    QTimer::singleShot(100, this, [this]() { activateWindow(); });
}

void VerificationImageWindow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && event->position().y() < kTitleBarHeight) {
        m_bDragging = true;
        m_ptPressGlobal = event->globalPosition();
        m_ptWindowAtPress = pos();
    }
    QWidget::mousePressEvent(event);
}

void VerificationImageWindow::mouseMoveEvent(QMouseEvent* event)
{
    if (m_bDragging)
        move(m_ptWindowAtPress + (event->globalPosition() - m_ptPressGlobal).toPoint());
    QWidget::mouseMoveEvent(event);
}

void VerificationImageWindow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_bDragging = false;
    QWidget::mouseReleaseEvent(event);
}
