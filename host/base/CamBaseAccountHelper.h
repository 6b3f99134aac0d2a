#pragma once

#include "KorvBaseExport.h"

#include <QJsonObject>
#include <QString>

// The signed-in cloud account: its token and the status object of the last log-in answer.
// GUI thread only.
class KORVBASE_EXPORT CamBaseAccountHelper
{
public:
    static CamBaseAccountHelper* instance();

    void SetLogin(const QString& token, const QJsonObject& status);
    void Logout();
    QString GetLoginToken() const { return m_strToken; }
    QJsonObject GetLoginStatus() const { return m_jsonStatus; }

private:
    CamBaseAccountHelper() = default;
    Q_DISABLE_COPY_MOVE(CamBaseAccountHelper)

    QString m_strToken;
    QJsonObject m_jsonStatus;
};
