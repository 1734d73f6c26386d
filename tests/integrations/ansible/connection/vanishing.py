"""The machine itself, until the tests are to run there: then nobody answers any more."""
from __future__ import annotations

from ansible.errors import AnsibleConnectionFailure
from ansible.plugins.connection.local import Connection as Local

DOCUMENTATION = """
name: vanishing
short_description: a machine that goes half-way
description: like local, until a module of diagnostics comes
extends_documentation_fragment: [connection_pipelining]
"""


class Connection(Local):
    transport = "vanishing"

    def exec_command(self, cmd, in_data=None, sudoable=True):
        if b"diags_run" in (in_data or b""):
            raise AnsibleConnectionFailure("no route to host")
        return super().exec_command(cmd, in_data, sudoable)
