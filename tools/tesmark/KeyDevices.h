// KeyDevices.h - the devices that the open components find keys on, and the tries of their PINs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Failure.h"
#include "components/certservice/KeyDevice.h"

// The folder of development keys, the tokens that the store names, and the scan by phone.
std::vector<std::unique_ptr<KeyDevice>> OpenKeyDevices();

// Wrong PINs that the key still bears, told by the open components' devices; -1 if they don't know.
int TriesLeft(const std::string& certId);
// "5 tries left", "locked"; empty if nobody knows.
std::string TriesText(int tries);

// Adds to the hint of a failure that a wrong PIN is behind how many tries it has left, if the
// devices know; if they fail, the failure stays as it was. Throws nothing of its own.
void TellTriesLeft(const std::string& certId, Failure& failure);
