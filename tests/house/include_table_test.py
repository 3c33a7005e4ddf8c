#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Shows that the include table is kept by a checker that notices."""

import subprocess
import tempfile
import unittest
from pathlib import Path

import include_table

FORBIDDEN = [
    ("source/runtime/Store.hpp", '#include "records/Transcript.hpp"'),
    ("source/records/Transcript.cpp", '#include "platform/Log.hpp"'),
    ("source/platform/Http.cpp", '#include "Clients/APIClient.hpp"'),
    ("source/Clients/APIClient.hpp", '#include "platform/HTTPClient.hpp"'),
    ("source/Clients/APIClient.hpp", '#include "features/AppFeature.hpp"'),
    ("source/features/AppFeature.cpp", '#include "platform/AudioEngine.hpp"'),
    ("source/features/AppFeature.cpp", '#include "Clients/APIClientImpl.hpp"'),
    ("source/features/AppFeature.cpp", "#include <platform/AudioEngine.hpp>"),
    ("source/features/AppFeature.cpp", '#include "../platform/AudioEngine.hpp"'),
    ("source/features/AppFeature.cpp", '  #  include   "app/Vekctl.hpp"'),
    ("source/identity/Login.cpp", '#include "Clients/APIClient.hpp"'),
    ("services/Backend.cpp", '#include "features/AppFeature.hpp"'),
    ("source/features/AppFeature.hpp", "#include <QObject>"),
    ("source/app/Main.cpp", "#include <QtCore/QString>"),
    ("source/platform/Window.hpp", "#include <QWindow>"),
    ("source/platform/AudioEngine.hpp", "#include <pulse/pulseaudio.h>"),
    ("source/platform/HTTPClient.hpp", "#include <curl/curl.h>"),
    ("source/platform/Log.hpp", "#include <systemd/sd-journal.h>"),
    ("source/platform/Crypto.hpp", "#include <openssl/sha.h>"),
    ("source/platform/WebSocket.hpp", "#include <boost/beast.hpp>"),
    ("source/platform/Settings.hpp", "#include <boost/json.hpp>"),
    ("source/platform/Settings.hpp", "#include <sys/file.h>"),
    ("source/platform/Settings.cpp", "#include <sqlite3.h>"),
    ("source/Clients/APIClientImpl.hpp", "#include <curl/curl.h>"),
    ("source/Clients/CaptureClient.cpp", "#include <unistd.h>"),
    ("source/cellar/Wine.hpp", "#include <string>"),
]

ALLOWED = [
    ("source/runtime/Store.hpp", "#include <vector>\n#include <fmt/format.h>"),
    ("source/Clients/APIClient.cpp", '#include "platform/HTTPClient.hpp"'),
    ("source/Clients/APIClientImpl.hpp", '#include "platform/HTTPClient.hpp"'),
    ("source/Clients/APIClient.cpp", '#include "Clients/APIClientImpl.hpp"'),
    ("source/features/AppFeature.hpp", '#include "Clients/APIClient.hpp"'),
    ("source/features/AppFeature.hpp", '#include "identity/Credentials.hpp"'),
    ("source/features/AppFeature.hpp", '// #include "platform/HTTPClient.hpp"'),
    ("source/features/AppFeature.hpp", '/*\n#include "platform/HTTPClient.hpp"\n*/'),
    ("source/platform/HTTPClient.cpp", "#include <curl/curl.h>\n#include <sys/file.h>"),
    ("source/views/Window.hpp", "#include <QWindow>"),
    ("source/app/Main.cpp", '#include "Clients/APIClientImpl.hpp"\n#include "platform/Log.hpp"'),
    ("services/Backend.cpp", '#include "Database.hpp"\n#include <sqlite3.h>'),
    ("services/Backend.cpp", '#include "services/Database.hpp"\n#include "records/Transcript.hpp"'),
]


class IncludeTable(unittest.TestCase):
    def test_every_forbidden_include_is_named_with_its_line(self):
        for name, text in FORBIDDEN:
            with self.subTest(file=name, text=text):
                found = include_table.offences(Path(name), "\n" + text)
                self.assertEqual(len(found), 1, found)
                line = 1 if "cellar" in name else 2
                self.assertTrue(found[0].startswith(f"{name}:{line}: "), found)

    def test_what_the_table_allows_passes(self):
        for name, text in ALLOWED:
            with self.subTest(file=name, text=text):
                self.assertEqual(include_table.offences(Path(name), text), [])

    def test_a_file_without_its_licence_is_named(self):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            subprocess.run(["git", "init", "-q", folder], check=True)
            (root / "source/runtime").mkdir(parents=True)
            (root / "scripts").mkdir()
            (root / "source/runtime/Good.hpp").write_text("// SPDX-License-Identifier: MIT\n")
            (root / "source/runtime/Bad.hpp").write_text("#pragma once\n")
            (root / "scripts/good").write_text("#!/bin/sh\n# SPDX-License-Identifier: MIT\n")
            (root / "scripts/bad").write_text("#!/bin/sh\n")
            found = [line.split(":")[0] for line in include_table.check(root)]
        self.assertEqual(found, ["scripts/bad", "source/runtime/Bad.hpp"])


if __name__ == "__main__":
    unittest.main()
