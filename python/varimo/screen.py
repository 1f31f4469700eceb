"""python3 -m varimo.screen: the command line of varimo.screen.

The implementation lives in varimo._screening, so that running this module
does not find it imported already by the package."""

import sys

from ._screening import main

if __name__ == "__main__":
    sys.exit(main())
