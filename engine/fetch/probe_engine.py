"""Asks an engine library what it is. Runs as a process of its own: a library that cannot be loaded,
or that crashes while it is loaded, must not take the fetcher with it."""
import ctypes
import json
import os
import sys

PLATFORM_HASH = 0
UNIVERSAL_HASH = 1
VERSION_ENTRIES = 3


def main(path: str) -> None:
    try:
        library = ctypes.CDLL(path)
        library.cef_api_hash.restype = ctypes.c_char_p
        answer = {
            "platform": library.cef_api_hash(PLATFORM_HASH).decode("ascii"),
            "universal": library.cef_api_hash(UNIVERSAL_HASH).decode("ascii"),
            "version": ".".join(str(library.cef_version_info(i)) for i in range(VERSION_ENTRIES)),
        }
    except (OSError, AttributeError) as error:
        answer = {"error": str(error)}
    print(json.dumps(answer), flush=True)
    # The library's own exit handlers expect a started engine.
    os._exit(0)


if __name__ == "__main__":
    main(sys.argv[1])
