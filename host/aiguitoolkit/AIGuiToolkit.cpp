#include "aiguitoolkit/AIGuiToolkit.h"
