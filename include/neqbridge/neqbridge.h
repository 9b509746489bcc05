/* neqbridge: the entries the host application calls by their plain names.
 *
 * Every entry has the same shape. `text` is a path or a name (input), `number` is never
 * read, and `out` is a buffer owned by the caller: entries that return text copy a
 * NUL-terminated string into it with no length check, so pass one large enough for a
 * path. The float result is a status (0 success, negative codes), a count, or the
 * version. No entry throws. The library keeps a little state between calls (an open
 * folder, a name registry, a list of names) and takes no lock: call it from one thread
 * at a time.
 */
#ifndef NEQBRIDGE_NEQBRIDGE_H
#define NEQBRIDGE_NEQBRIDGE_H

#ifdef __cplusplus
extern "C" {
#endif

/* 4.09 */
float Version(char* text, double number, char* out);

/* Folder listing: OpenFolder(folder), then GetFile until it returns -3, then CloseFolder.
 * A second OpenFolder before CloseFolder replaces the stream (the first stays open). */
/* 0; -1 cannot be opened */
float OpenFolder(char* text, double number, char* out);
/* out receives one entry name ("." and ".." included): 0; -1 no folder open; -3 no more */
float GetFile(char* text, double number, char* out);
/* 0; -1 no folder open */
float CloseFolder(char* text, double number, char* out);

/* Folder and file services */
/* text becomes the working directory: 0; -1 */
float SetFolder(char* text, double number, char* out);
/* creates the folder text (its parent must exist): 0; -1 */
float CreateFolder(char* text, double number, char* out);
/* removes the file text: 0; -1 */
float FileDelete(char* text, double number, char* out);
/* appends the file text to the file named by out, then the source's last byte once
 * more: 0 (also for a null pointer); -1 source unreadable; -2 destination not writable */
float AddFile(char* text, double number, char* out);
/* out receives the folder of the users' home folders: 1 (success); 0 */
float GetPublicFolder(char* text, double number, char* out);

/* Unique names */
/* forgets every name handed out: 0 */
float ClearNameSet(char* text, double number, char* out);
/* out receives the unique form of the name text, now reserved: 0 */
float CheckName(char* text, double number, char* out);

/* Blend-shape scene: clearUVString, addBlendFile once per target, endBlendFile. */
/* empties the shared list of target names: 0 */
float clearUVString(char* text, double number, char* out);
/* records the target scene text and appends it to the base scene named by out:
 * 0; -9 null pointer; -1760 target unreadable; -2760 base unreadable; -3760 base not
 * writable */
float addBlendFile(char* text, double number, char* out);
/* appends the blend-shape deformer for the recorded targets to the base scene text:
 * 0; -9 null pointer; -2760 base unreadable; -3760 base not writable */
float endBlendFile(char* text, double number, char* out);

/* UV welding */
/* welds the split UVs of the .ma or .NeQ file text and rewrites it: 0; -1 */
float NeQMergeUVs(char* text, double number, char* out);

#ifdef __cplusplus
}
#endif

#endif
