#include "publicdatacontroller/IAIWidget.h"

namespace publicdatacontroller {
IAIWidget::~IAIWidget() = default;
}
