/* A host-like C program using an installed neqbridge: the version, then a folder
 * created and a file in it deleted through the host entries.
 * usage: consumer NEW-FOLDER (its parent must exist, the folder itself must not) */
#include <neqbridge/neqbridge.h>

#include <stdio.h>

static int expect(const char* call, float result, float wanted) {
    if (result == wanted) return 0;
    fprintf(stderr, "%s returned %g, not %g\n", call, (double)result, (double)wanted);
    return 1;
}

int main(int argc, char** argv) {
    char out[4096] = "";
    char file[4096];
    FILE* stream;
    int failures = 0;

    if (argc != 2) {
        fprintf(stderr, "usage: consumer NEW-FOLDER\n");
        return 2;
    }
    failures += expect("Version", Version(NULL, 0.0, out), 4.09f);
    failures += expect("CreateFolder", CreateFolder(argv[1], 0.0, out), 0.0f);
    failures +=
        expect("CreateFolder of an existing folder", CreateFolder(argv[1], 0.0, out), -1.0f);

    snprintf(file, sizeof file, "%s/scene.ma", argv[1]);
    stream = fopen(file, "w");
    if (stream == NULL || fclose(stream) != 0) {
        fprintf(stderr, "cannot write %s\n", file);
        return 1;
    }
    failures += expect("FileDelete", FileDelete(file, 0.0, out), 0.0f);
    failures += expect("FileDelete of a deleted file", FileDelete(file, 0.0, out), -1.0f);

    printf("neqbridge %.2f from C: %s\n", (double)Version(NULL, 0.0, out),
           failures == 0 ? "ok" : "FAILED");
    return failures == 0 ? 0 : 1;
}
