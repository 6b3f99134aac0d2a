#include "CamBaseAccountHelper.h"

CamBaseAccountHelper* CamBaseAccountHelper::instance()
{
    static CamBaseAccountHelper helper;
    return &helper;
}

void CamBaseAccountHelper::SetLogin(const QString& token, const QJsonObject& status)
{
    m_strToken = token;
    m_jsonStatus = status;
}

void CamBaseAccountHelper::Logout()
{
    m_strToken.clear();
    m_jsonStatus = QJsonObject();
}
