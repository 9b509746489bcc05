"""Prints where `cmake --install` puts the package, relative to the install prefix given
as the argument: the interpreter's own site folder under that prefix when it has one
(Debian: /usr -> lib/python3/dist-packages, /usr/local -> lib/python3.11/dist-packages),
else lib/python3/dist-packages."""

import os
import sys

prefix = os.path.normpath(sys.argv[1])
for folder in sys.path:
    relative = os.path.relpath(folder, prefix) if folder.startswith(prefix + os.sep) else ""
    if relative.startswith("lib" + os.sep) and relative.endswith(("site-packages", "dist-packages")):
        print(relative)
        break
else:
    print(os.path.join("lib", "python3", "dist-packages"))
