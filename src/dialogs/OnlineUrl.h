// OnlineUrl.h - the dialog in which the user says where the online seal service stands.
#pragma once

// Shows the host part of the setting sWSURL for editing, and blocks until the user has answered.
// kDialogConfirmed: the address stands in the setting, whole ("http://", host part,
// "/QelmServlet") and untested, unless it couldn't be written, about which nobody is told; where
// the setting bSealPosition, which goes to g_sealPositionMode, isn't 1, the dialog tells so and
// stores nothing. kDialogCancelled: nothing is stored. Anything else: the dialog could not be
// shown.
//
// An address of more than 511 bytes is platform::RaiseInvalidParameter, and where that returns, it
// is neither tested nor stored, and the dialog stays open.
int ShowOnlineUrl();
