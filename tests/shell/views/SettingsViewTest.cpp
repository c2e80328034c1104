#include "shell/views/SettingsStage.h"
