#include "AccountRequest.h"

#include "CNetLoginTask.h"
#include "CamBaseTextHelper.h"

#include <QCoreApplication>

StructAccountReply AccountRequest::Run(int requestKind, const QJsonObject& parameters)
{
    CNetLoginTask task;
    const bool bAnswered = task.Start(requestKind, QVariant(parameters));
    const QJsonObject object = CamBaseTextHelper::instance()->ConvertXmlToJson(task.GetResult().toByteArray());
    StructAccountReply reply;
    if (object.contains(QLatin1String("code"))) {
        reply.bHasCode = true;
        reply.strCode = object.value(QLatin1String("code")).toString();
    }
    reply.strMsg = object.value(QLatin1String("msg")).toString();
    reply.objData = object.value(QLatin1String("data")).toObject();
    if (!bAnswered && !reply.bHasCode)
        reply.strTransportError = task.ErrorString();
    return reply;
}

QString AccountRequest::FailureText(const StructAccountReply& reply)
{
    if (!reply.strTransportError.isEmpty() || !reply.bHasCode)
        return QCoreApplication::translate("AccountRequest", "无法连接账号服务，请检查网络后重试");
    if (!reply.strMsg.isEmpty())
        return reply.strMsg;
    return QCoreApplication::translate("AccountRequest", "请求失败（错误码 %1）").arg(reply.strCode);
}
