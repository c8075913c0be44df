/* host.c - the smallest host: which picture goes on the page, and a signature over some bytes.
 * Build it in its own folder, so that it finds the library when it runs, with
 *   cc host.c -I../include -L../build/linux/bin -lTesmarkOpt_x64 -Wl,-rpath,$PWD/../build/linux/bin
 * and on Windows, where the library's DLLs are to lie beside it or on PATH, with
 *   cl host.c /I..\include ..\lib\TesmarkOpt_x64.lib */
#include <TesmarkOpt.h>
#include <stdio.h>
#include <stdlib.h>

/* Asks for the size, then for the bytes; the caller frees them. */
static unsigned char* TakePicture(int* length) {
    if (GetSealInfo(NULL, length) != 0) return NULL;
    unsigned char* picture = malloc(*length);
    if (picture != NULL && GetSealInfo(picture, length) == 0) return picture;
    free(picture);
    return NULL;
}

static unsigned char* Sign(const char* text, int textLength, int* length) {
    const unsigned char* data = (const unsigned char*)text;
    if (P7SignData(data, textLength, NULL, 0, NULL, length) != 0) return NULL;
    unsigned char* signature = malloc(*length);
    if (signature != NULL && P7SignData(data, textLength, NULL, 0, signature, length) == 0) {
        return signature;
    }
    free(signature);
    return NULL;
}

int main(int argc, char** argv) {
    if (argc > 2 && LoginIn(argv[1], argv[2]) != 0) {
        fprintf(stderr, "The login failed; Fenmoor.log tells why.\n");
        return 1;
    }
    int pictureLength = 0;
    unsigned char* picture = TakePicture(&pictureLength);
    if (picture == NULL) {
        fprintf(stderr, "No seal; Fenmoor.log tells why.\n");
        return 1;
    }
    int width = 0;
    int height = 0;
    GetSealPicSize(&width, &height);
    printf("picture: %d bytes, %d by %d\n", pictureLength, width, height);
    free(picture);

    int signatureLength = 0;
    unsigned char* signature = Sign("contract", 8, &signatureLength);
    if (signature == NULL) {
        fprintf(stderr, "No signature; Fenmoor.log tells why.\n");
        return 1;
    }
    printf("signature: %d bytes\n", signatureLength);
    free(signature);
    ClearSelectKeyID();
    return UnInitKVLLib();
}
