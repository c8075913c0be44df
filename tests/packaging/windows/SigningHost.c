/* A host: opens a key, takes its only seal, and signs a file's bytes.
 *   SigningHost CERTIFICATE PIN DATA SIGNATURE */
#include <TesmarkOpt.h>
#include <stdio.h>
#include <stdlib.h>

static int Fail(const char* step, int code) {
    fprintf(stderr, "%s: %d\n", step, code);
    return 1;
}

int main(int argc, char** argv) {
    if (argc != 5) return 2;
    unsigned char data[4096];
    FILE* input = fopen(argv[3], "rb");
    if (input == NULL) return Fail(argv[3], 0);
    const int length = (int)fread(data, 1, sizeof data, input);
    fclose(input);

    int code = LoginIn(argv[1], argv[2]);
    if (code != 0) return Fail("LoginIn", code);
    int pictureLength = 0;
    code = GetSealInfo(NULL, &pictureLength);
    if (code != 0 || pictureLength <= 0) return Fail("GetSealInfo", code);

    int signatureLength = 0;
    code = P7SignData(data, length, NULL, 0, NULL, &signatureLength);
    if (code != 0) return Fail("P7SignData, size", code);
    unsigned char* signature = malloc((size_t)signatureLength);
    if (signature == NULL) return Fail("malloc", signatureLength);
    code = P7SignData(data, length, NULL, 0, signature, &signatureLength);
    if (code != 0) return Fail("P7SignData", code);

    FILE* output = fopen(argv[4], "wb");
    if (output == NULL) return Fail(argv[4], 0);
    const size_t written = fwrite(signature, 1, (size_t)signatureLength, output);
    fclose(output);
    free(signature);
    ClearSelectKeyID();
    return written == (size_t)signatureLength ? UnInitKVLLib() : 1;
}
