#pragma once
// The windowing half of the platform in one include: windows and messages, timers, input,
// hooks, the desktop, system colours, cursors and the clipboard.
#include "platform/Clipboard.h"
#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/Hook.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Messages.h"
#include "platform/SysColors.h"
#include "platform/Timer.h"
#include "platform/Window.h"
