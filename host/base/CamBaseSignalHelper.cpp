#include "CamBaseSignalHelper.h"

CamBaseSignalHelper* CamBaseSignalHelper::instance()
{
    static CamBaseSignalHelper helper;
    return &helper;
}
