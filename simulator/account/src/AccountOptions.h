#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>

// Everything account-sim can be told on its command line. Times are kept in
// milliseconds so that tests can shorten them; the command line takes seconds.
struct AccountOptions
{
    QHostAddress bindAddress{QHostAddress::LocalHost};
    quint16 port = 8090;
    QString dataFile;             // the bindings, one JSON object keyed by serial number
    QString logFile;              // optional copy of the console lines
    qint64 imageTtlMs = 120000;   // a picture code lives two minutes
    qint64 smsTtlMs = 300000;     // an SMS code five minutes
    int smsTries = 5;             // wrong SMS codes before the code is void
    qint64 smsIntervalMs = 60000; // least time between two SMS codes to one number
    int rateLimit = 20;           // picture and SMS requests per number and window
    qint64 rateWindowMs = 600000;

    static bool Parse(const QStringList& arguments, AccountOptions* options, QString* error);
};
