// PdfKey.h - an entry of what may be no dictionary.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

// Null too for an object that isn't one.
inline QPDFObjectHandle KeyOf(QPDFObjectHandle object, const char* key) {
    return object.isDictionary() ? object.getKey(key) : QPDFObjectHandle::newNull();
}
