"""The C interface from another language: a whole session by Python's ctypes, over the Linux host, as a wrapper would.

Usage: c_interface_test.py TOOL LIBRARY HEADER…
"""

import ctypes
import json
import os
import re
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.request

TYPES = {
    "void": None, "bool": ctypes.c_bool, "double": ctypes.c_double, "int32_t": ctypes.c_int32,
    "int64_t": ctypes.c_int64, "size_t": ctypes.c_size_t,
    "orbinel_callback": ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p),
    "orbinel_completion": ctypes.CFUNCTYPE(None, ctypes.c_void_p),
    "orbinel_destroy": ctypes.CFUNCTYPE(None, ctypes.c_void_p),
    "orbinel_delegate_implementation": ctypes.CFUNCTYPE(
        ctypes.c_bool, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p, ctypes.c_void_p),
}


TOKEN = b"application:didRegisterForRemoteNotificationsWithDeviceToken:"
OPEN_URL = b"application:openURL:options:"
HANDLE_OPEN_URL = b"application:handleOpenURL:"
FETCHING = b"application:didReceiveRemoteNotification:fetchCompletionHandler:"


def bind(library, headers):
    """Every function of the headers, with its types. A result of type char* stays an address, which has to be freed."""
    functions = {}
    for header in headers:
        with open(header) as file:
            text = re.sub(r"/\*.*?\*/", "", file.read(), flags=re.S)
        for result, name, parameters in re.findall(r"ORBINEL_API ([^;]*?)(orbinel_\w+)\(([^;]*)\);", text):
            function = getattr(library, name)
            function.restype = ctypes.c_char_p if result.strip() == "const char*" else type_of(result)
            function.freed_by = result.strip(" *").replace("char", "orbinel") + "_free"
            parameters = re.sub(r"bool \(\*predicate\)\(void\* user_data\)", "void* predicate", parameters)
            kinds = [] if parameters == "void" else parameters.split(",")
            function.argtypes = [type_of(re.sub(r"\w+\s*$", "", kind), True) for kind in kinds]
            functions[name] = function
    return functions


def type_of(declared, is_argument=False):
    declared = re.sub(r"\bconst\b", "", declared).strip()
    if declared == "char*" and is_argument:
        return ctypes.c_char_p
    return ctypes.c_void_p if declared.endswith("*") else TYPES[declared]


class Backend:
    """The tool's stand-in for the vendor's API, which tells what arrived."""

    def __init__(self):
        self.process = subprocess.Popen([tool, "backend", "--port", "0"], stdout=subprocess.PIPE)
        self.origin = self.process.stdout.readline().decode().split()[-1]

    def end(self):
        self.process.terminate()
        self.process.communicate()

    def inspect(self, what):
        with urllib.request.urlopen(self.origin + "/inspect/" + what) as answer:
            return json.load(answer)

    def arrived(self, path):
        return [request["payload"] for request in self.inspect("requests") if request["path"].endswith(path)]

    def stops(self):
        return self.arrived("/session/stop")


class CInterface(unittest.TestCase):
    def setUp(self):
        self.backend = Backend()
        self.directory = tempfile.TemporaryDirectory()
        self.options = json.dumps({"data_directory": self.directory.name, "application_version": "2.1"}).encode()
        self.kept = []  # what C calls must not be collected

    def tearDown(self):
        self.backend.end()
        self.directory.cleanup()

    def launch(self, initialise=True):
        host = orbinel["orbinel_start_linux"](self.options)
        self.assertTrue(host, orbinel["orbinel_last_error"]())
        if initialise:
            self.initialise()
        return host

    def initialise(self):
        orbinel["orbinel_init_with_launch_options_custom_endpoint"](
            None, b"acme", b"group.acme", self.backend.origin.encode())

    def end(self, host):
        orbinel["orbinel_shutdown"]()
        orbinel["orbinel_linux_free"](host)

    def run_until(self, host, holds):
        limit = time.monotonic() + 20
        while not holds():
            self.assertLess(time.monotonic(), limit)
            orbinel["orbinel_linux_run_until"](host, None, None, 20)

    def callback(self, received):
        self.kept.append(TYPES["orbinel_callback"](lambda _, text: received.append(text.decode())))
        return self.kept[-1]

    def text(self, address):
        """The text that a function returned, freed."""
        content = ctypes.string_at(address).decode() if address else None
        orbinel["orbinel_free"](address)
        return content

    def error(self):
        return (orbinel["orbinel_last_error"]() or b"").decode()

    def test_a_session_arrives_as_it_was_told(self):
        events, ids, logins, destroyed = [], [], [], []
        host = self.launch()
        self.kept.append(TYPES["orbinel_destroy"](destroyed.append))
        destroy = self.kept[-1]
        sender = orbinel["orbinel_sender_create"](7, destroy)
        orbinel["orbinel_register_orbinel_callback_with_selector"](self.callback(events), sender)
        orbinel["orbinel_set_gdpr_consent"](True)
        orbinel["orbinel_set_mobile_gdpr_consent"](True)
        orbinel["orbinel_register_orbinel_id_listener_with_selector"](self.callback(ids), sender)
        orbinel["orbinel_linux_did_become_active"](host)
        self.run_until(host, lambda: events)
        self.assertEqual([json.loads(event) for event in events], [{"type": 6}])
        self.assertEqual(ids[-1:], [self.text(orbinel["orbinel_get_orbinel_id"]())])

        event = orbinel["orbinel_tag_event"](b"purchase")
        orbinel["orbinel_event_add_parameters"](
            event, json.dumps({"sku": "ä1", "price": 9.5, "count": 3, "at": {"$date": 0}}).encode())
        orbinel["orbinel_event_add_parameters"](event, b'{"price": }')
        self.assertIn("orbinel_event_add_parameters: parameters is not valid JSON at byte 10", self.error())
        from_elsewhere = threading.Thread(
            target=lambda: orbinel["orbinel_event_add_parameter_with_boolean"](event, b"gift", True))
        from_elsewhere.start()
        from_elsewhere.join()
        self.assertTrue(self.error(), "an error belongs to its thread")
        orbinel["orbinel_event_build"](event)
        orbinel["orbinel_event_free"](event)

        user = orbinel["orbinel_get_current_user"]()
        orbinel["orbinel_user_set_name"](user, b"Ada")
        orbinel["orbinel_user_set_custom_attribute_with_array"](user, b"tags", b'["a", "b"]')
        orbinel["orbinel_linux_did_enter_background"](host)
        self.run_until(host, self.backend.stops)

        stop = self.backend.stops()[0]
        purchase = next(e for e in stop["custom_events"] if e["event_name"] == "purchase")
        parameters = purchase["event_params"]
        self.assertTrue(parameters.pop("at").startswith("19"))
        self.assertEqual(parameters, {"sku": "ä1", "price": 9.5, "count": 3, "gift": True})
        self.assertIn("Ada", stop["user_attributes"].values())
        self.assertEqual(stop["custom_attributes"]["tags"], ["a", "b"])

        self.log_in(host, user, logins)
        self.assertNotEqual(logins, ids[:1])
        self.assertEqual(destroyed, [])
        orbinel["orbinel_sender_free"](sender)
        self.assertEqual(destroyed, [7])
        self.end(host)
        orbinel["orbinel_user_set_name"](user, b"gone")
        orbinel["orbinel_user_free"](user)

    def log_in(self, host, user, logins):
        orbinel["orbinel_linux_did_become_active"](host)
        identifiers = orbinel["orbinel_identifiers_create"]()
        orbinel["orbinel_identifiers_add_email"](identifiers, b"ada@example.org")
        orbinel["orbinel_user_login_orbinel_id_result"](user, identifiers, self.callback(logins), None,
                                                        TYPES["orbinel_destroy"]())
        self.run_until(host, lambda: logins)
        self.assertEqual(logins, [self.text(orbinel["orbinel_get_orbinel_id"]())])
        self.assertIn(logins[0], json.dumps(self.backend.inspect("identities")))
        orbinel["orbinel_identifiers_free"](identifiers)

    def test_a_delegate_hears_and_answers_and_so_does_the_library(self):
        heard, done, destroyed, kept = [], [], [], []

        def implementation(user_data, operation, arguments, handler):
            heard.append((user_data, operation, json.loads(arguments)))
            if operation == FETCHING:
                kept.append(orbinel["orbinel_completion_handler_copy"](handler))
            return operation == OPEN_URL

        self.kept += [TYPES["orbinel_delegate_implementation"](implementation), TYPES["orbinel_destroy"](destroyed.append),
                      TYPES["orbinel_completion"](done.append)]
        implementation, destroy, completion = self.kept
        self.assertIsNone(orbinel["orbinel_delegate_create"](7, destroy))
        self.assertEqual(destroyed, [7])
        host = self.launch(initialise=False)
        delegate = orbinel["orbinel_delegate_create"](8, destroy)
        for operation in (TOKEN, OPEN_URL, FETCHING):
            self.assertTrue(orbinel["orbinel_delegate_add_operation"](delegate, operation, implementation), self.error())
        self.assertFalse(orbinel["orbinel_delegate_add_operation"](delegate, b"application:fly:", implementation))
        self.assertIn('there is no operation "application:fly:"', self.error())
        orbinel["orbinel_set_application_delegate"](delegate)
        orbinel["orbinel_set_notification_delegate"](delegate)
        self.initialise()

        def perform(operation, **arguments):
            return orbinel["orbinel_delegate_perform"](
                delegate, operation, json.dumps(arguments).encode(), completion, 9, destroy)

        self.assertFalse(perform(TOKEN, device_token="0aFF"))
        self.assertTrue(perform(OPEN_URL, url="shop://test_device/T-1", options={"n": 1}))
        self.assertFalse(perform(HANDLE_OPEN_URL, url="shop://x"), "only the library implements it")
        self.assertFalse(perform(FETCHING, user_info={"aps": {"alert": "ä"}}))
        self.assertEqual(heard, [(8, TOKEN, {"device_token": "0aff"}),
                                 (8, OPEN_URL, {"url": "shop://test_device/T-1", "options": {"n": 1}}),
                                 (8, FETCHING, {"user_info": {"aps": {"alert": "ä"}}})])
        self.assertEqual((done, destroyed), ([9], [7, 9, 9, 9]), "what nobody implements is done")
        for _ in range(2):
            orbinel["orbinel_completion_handler_call"](kept[0])
        orbinel["orbinel_completion_handler_free"](kept[0])
        self.assertEqual((done, destroyed), ([9, 9], [7, 9, 9, 9, 9]))
        for wrong in ({"device_token": "0"}, {"device_token": 1}, {"url": "x"}):
            self.assertFalse(perform(TOKEN, **wrong))
            self.assertIn(next(iter(wrong)), self.error())
        self.assertEqual(len(heard), 3)

        orbinel["orbinel_linux_did_become_active"](host)
        self.run_until(host, lambda: [body for body in self.backend.arrived("/test_device/add") if body["token"] == "T-1"])
        orbinel["orbinel_linux_did_enter_background"](host)
        self.run_until(host, self.backend.stops)
        self.assertIn('"0aff"', json.dumps(self.backend.stops()))

        self.end(host)
        self.assertTrue(perform(OPEN_URL, url="shop://late"), "the application goes on hearing")
        orbinel["orbinel_delegate_free"](delegate)
        self.assertEqual(destroyed[-1], 8)

    def test_the_example_of_the_readme_runs(self):
        with open(os.path.join(os.path.dirname(header_paths[0]), "../../README.md")) as file:
            code = re.search(r"```python\n(.*?)```", file.read(), re.S).group(1)
        code = code.replace("build/demo/hosts/linux/liborbinel-linux.so", library_path)
        code = code.replace("http://127.0.0.1:8787", self.backend.origin)
        environment = {**os.environ, "XDG_DATA_HOME": self.directory.name}
        subprocess.run([sys.executable, "-c", code], env=environment, timeout=30, check=True)
        names = [event["event_name"] for event in self.backend.stops()[0]["custom_events"]]
        self.assertEqual(names, ["session_start", "purchase"])

    def test_nothing_is_harmful_at_any_time(self):
        self.call_everything_with_nothing()
        host = self.launch()
        orbinel["orbinel_linux_did_become_active"](host)
        self.call_everything_with_nothing()
        elsewhere = threading.Thread(target=self.call_everything_with_nothing)
        elsewhere.start()
        self.run_until(host, lambda: not elsewhere.is_alive())
        self.end(host)
        self.call_everything_with_nothing()

    def call_everything_with_nothing(self):
        """NULL, 0 and false, wherever they fit; but no consent is withheld, for that would close the gate before most."""
        for name, function in orbinel.items():
            if name in ("orbinel_shutdown", "orbinel_start_linux") or name.endswith("gdpr_consent"):
                continue
            zeros = [kind(0) if kind in (ctypes.c_bool, ctypes.c_double, ctypes.c_int32, ctypes.c_int64, ctypes.c_size_t)
                     else kind() for kind in function.argtypes]
            result = function(*zeros)
            if function.restype is ctypes.c_void_p:
                orbinel[function.freed_by](result)


if __name__ == "__main__":
    tool, library_path, *header_paths = sys.argv[1:]
    orbinel = bind(ctypes.CDLL(library_path), header_paths)
    unittest.main(argv=sys.argv[:1])
