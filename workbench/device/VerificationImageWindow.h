#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QPixmap>
#include <QPointF>
#include <QWidget>

namespace Ui {
class VerificationImageWindow;
}

// The "安全验证" picture-code dialog: fetches a picture for a phone number from the
// account service, lets the user type its characters or fetch another, and leaves
// the typed text and the picture's id for the opener to read after SignalClose.
class VerificationImageWindow : public QWidget
{
    Q_OBJECT

public:
    // One fetch's outcome, made on a worker thread: an image, since pixmaps belong to the GUI thread.
    struct StructFetchResult
    {
        QString strCode;
        QString strImgId;
        QString strLabel;
        QImage image;
    };

    VerificationImageWindow(const QString& nationCode, const QString& mobile, QWidget* parent = nullptr);
    ~VerificationImageWindow() override;

    // Empty unless the user confirmed.
    QString EnteredCode() const { return m_strEnteredCode; }
    QString ImageId() const { return m_strImgId; }

Q_SIGNALS:
    void SignalClose();

private Q_SLOTS:
    void on_closeBtn_clicked();
    void RecvReply();
    void on_confirmBtn_clicked();
    void on_cancelBtn_clicked();
    void on_changeBtn_clicked();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    static StructFetchResult Fetch(const QString& nationCode, const QString& mobile);

    Ui::VerificationImageWindow* ui = nullptr;
    QString m_strEnteredCode;
    QString m_strNationCode;
    QString m_strMobile;
    QString m_strImgId;
    QFutureWatcher<StructFetchResult> m_watcher;
    bool m_bDragging = false;
    QPointF m_ptPressGlobal;
    QPoint m_ptWindowAtPress;
};
