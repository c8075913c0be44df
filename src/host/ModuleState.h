// ModuleState.h - the one record of a session, and the steps that every export shares.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bridge/AppOpt.h"
#include "foundation/StateString.h"
#include "platform/Automation.h"
#include "seal/CertEsealOpt.h"

// One instance of each, set up when the library is loaded, protected by no lock.
extern CAppOpt g_appOpt;
extern CCertEsealOpt g_certEsealOpt;

extern StateString g_currentCertId;     // the selected certificate; empty: nothing is selected
extern StateString g_selectedSeal;      // the selected seal's file
extern StateString g_selectedSealName;  // kept for the record
extern int g_esealMode;                 // a SealType, or what a host said in its place
extern int g_sealPicWidth;
extern int g_sealPicHeight;
extern StateString g_sealInfoCache;       // the picture between a size query and its fetch
extern StateString g_certBase64Data;      // the same for the certificate's Base64
extern StateString g_packHashCert;        // certificate for the hash of the original PDF
extern StateString g_originalPdfHash;     // Base64 of the last such hash
extern unsigned char g_stampPictureMode;  // 0: selecting a seal doesn't touch the key
extern int g_sealFlowBusy;                // 1 while the dialog flow runs
extern int g_selectedSealIndex;           // kept for the record
extern StateString g_appId;               // names the host to the scan by phone
// The control that draws personal seals, between a drawing that its style's range forbade and the
// next one; null else. Nothing releases it when the library is unloaded.
extern platform::AutomationObject g_personalSealEngine;

// What dialogs are given and leave behind; it lives until the next use of the dialog.
using TextPair = std::pair<std::string, std::string>;
extern std::string g_dialogCertLabel;            // the certificates offered, as the list in text
extern std::vector<TextPair> g_dialogCertItems;  // the same: label and identifier
extern std::string g_pickedCertLabel;            // the certificate picked
extern std::vector<TextPair> g_onlineSealNames;  // the online seals offered: name and number
extern std::string g_onlineSealPick;             // the number picked
extern int g_sealPositionMode;                   // bSealPosition as its dialog last read it
extern int g_dialogSealRow;                      // the certificate picked in the tree; -1: none
extern int g_dialogSealCol;                      // the seal picked there; -1: none
extern std::vector<SealRecord> g_pzmSealItems;   // the seals of the last scan; owns their buffers
extern unsigned int g_pzmScanCount;              // the scans so far that filled that list
extern std::string g_pzmDialogPick;              // the picture picked among them
extern SealRecord g_pzmDialogSeal;               // and its record, whose buffers the list owns

// At the head of every export that needs the service: starts it if it is down, with two attempts.
// 0, or the result of the second attempt.
int EnsureServiceReady();

// As EnsureServiceReady; a failure ends the selection. For the exports that sign.
int EnsureServiceReadyToSign();

// The exports of these names call them.
namespace state {

// Ends the document's selection; the key stays logged in. Always 0.
int ClearSelectKeyID();

// Drops the selected seal and what is cached of it.
void ResetEsealData();

}  // namespace state
