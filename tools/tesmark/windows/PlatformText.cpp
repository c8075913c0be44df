#include "PlatformText.h"

const char kKeyFolderDefault[] = "%LOCALAPPDATA%\\Velmora\\keys";
const char kTrustFolderDefault[] = "%ProgramData%\\Velmora\\trust";
const char kCaFolderDefault[] = "%LOCALAPPDATA%\\Velmora\\ca";

const char kConfigSetExamples[] =
    "  tesmark config set bSignWithTimeStamp 1\n"
    "  tesmark config set CertService C:\\Velmora\\Program\\KVLAppCOM.dll\n"
    "  tesmark config set Pkcs11Modules C:\\Windows\\System32\\token.dll";

const char kExampleFolder[] = "C:\\path\\of\\";

const char kAdministratorHint[] = "run this as administrator";
const char kSharedFolderAdvice[] = "give the group Users the right to change the folder";
const char kOtherFoldersHint[] = "";
