#include "PlatformText.h"

const char kKeyFolderDefault[] = "~/.local/share/velmora/keys";
const char kTrustFolderDefault[] = "/etc/velmora/trust";
const char kCaFolderDefault[] = "~/.local/share/velmora/ca";

const char kConfigSetExamples[] =
    "  tesmark config set bSignWithTimeStamp 1\n"
    "  tesmark config set CertService /opt/velmora/lib/libKVLAppCOM.so\n"
    "  tesmark config set Pkcs11Modules /usr/lib/softhsm/libsofthsm2.so";

const char kExampleFolder[] = "/path/of/";

const char kAdministratorHint[] = "use sudo";
const char kSharedFolderAdvice[] = "give everybody the right to write the folder (mode 1777)";
const char kOtherFoldersHint[] = "; or set VELMORA_PREFIX\n  to a folder of your own";
