#include "publicdatacontroller/CLocalDataManagerDelegate.h"

namespace publicdatacontroller {

std::shared_ptr<CLocalDataManagerDelegate> CLocalDataManagerDelegate::Create()
{
    return std::make_shared<CLocalDataManagerDelegate>();
}

CLocalDataManagerDelegate::CLocalDataManagerDelegate() = default;
CLocalDataManagerDelegate::~CLocalDataManagerDelegate() = default;

} // namespace publicdatacontroller
