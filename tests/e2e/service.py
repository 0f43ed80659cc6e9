"""The web service of the journeys: the reference service with changed answers, and a bundle with its address."""

import json
import os
import pathlib
import shutil

from session import SOURCE, wait_for

ANSWERS = SOURCE / "tools/reference-answers"


class Service:
    """A reference service for a session's agent, which ends with the session."""

    GUIDE, UPGRADE, HEARTBEAT = 214, 24, 21

    def __init__(self, session):
        self.folder = session.folder / "service"
        shutil.copytree(ANSWERS, self.folder)
        self.log = session.folder / "requests"
        with self.log.open("wb") as log:
            command = [SOURCE / "tools/reference-service", "--answers", self.folder, "--tls", self.folder]
            session.start(*command, stdout=log)
        wait_for(lambda: "\n" in self.log.read_text(), "the service")
        session.agent_program = make_bundle(session, QuilexServiceURL=self.log.read_text().split()[0])

    def answer(self, code, **data):
        """Changes members of an answer's data."""
        file = self.folder / f"{code}.json"
        answer = json.loads(file.read_text())
        answer["data"].update(data)
        file.write_text(json.dumps(answer))

    def misbehave(self, code, mode):
        (self.folder / f"{code}.mode").write_text(mode)

    def requests(self, code):
        """The requests for that function code so far, as the service printed them."""
        whole = self.log.read_text().split("\n")[1:-1]
        return [request for request in map(json.loads, whole) if request["f"] == str(code)]


def make_bundle(session, **info):
    """Copies the agent beside a bundle whose information dictionary has those values; returns the program's path."""
    installed = pathlib.Path(session.folder) / "installed"
    bundle = installed / "share/quilexhelper"
    if not bundle.exists():
        bundle.mkdir(parents=True)
        (installed / "bin").mkdir()
        # Not a link, because the agent looks for the bundle beside its real file.
        shutil.copy2(session.programs_folder / "quilexhelper", installed / "bin/quilexhelper")
        original = session.programs_folder.parent / "share/quilexhelper"
        for entry in original.iterdir():
            os.symlink(entry, bundle / entry.name)
    file = bundle / "Info.json"
    dictionary = {**json.loads(file.read_text()), **info}
    file.unlink()
    file.write_text(json.dumps(dictionary))
    return installed / "bin/quilexhelper"
