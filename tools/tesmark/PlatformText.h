// PlatformText.h - what the program says otherwise on each platform.
#pragma once

// Where a setting's folder is without the setting.
extern const char kKeyFolderDefault[];
extern const char kTrustFolderDefault[];
extern const char kCaFolderDefault[];

// Behind the examples of `tesmark config set`: lines, the last one without its end.
extern const char kConfigSetExamples[];

// With its separator, where a message names no file that is there.
extern const char kExampleFolder[];

// What a user does who lacks a right.
extern const char kAdministratorHint[];
extern const char kSharedFolderAdvice[];
// Behind a sentence that names the settings of the folders.
extern const char kOtherFoldersHint[];
