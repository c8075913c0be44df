// Resource.h - the numbers of the dialogs' templates and of their controls, for the logic and for
// the resource script alike: macros are all that both can read.
#pragma once

// "确定" and "取消" have the same number in every dialog.
#define TESMARK_BUTTON_OK 1
#define TESMARK_BUTTON_CANCEL 2

// A certificate out of a list.
#define TESMARK_DIALOG_CERT 101
#define TESMARK_CERT_LIST 1001

// A seal of the online service out of a list.
#define TESMARK_DIALOG_ONLINE_SEAL 102
#define TESMARK_ONLINE_SEAL_LIST 1002

// The address of the online service.
#define TESMARK_DIALOG_ONLINE_URL 103
#define TESMARK_URL_FIELD 1003
#define TESMARK_URL_TEST 1006

// A seal out of a tree, with a preview.
#define TESMARK_DIALOG_SEAL_TREE 104
#define TESMARK_SEAL_TREE 1004
#define TESMARK_SEAL_PREVIEW 1005
