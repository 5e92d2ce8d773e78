"""The trash of external volumes: the panel that asks for each of them, and what is emptied there."""

import subprocess
from pathlib import Path

from case import wait_for
from cleanup_case import DISK, CleanupCase
from own_root import SCRATCH, enter_own_root

VOLUME = Path("/Volumes/BACKUP")
DISK_OF_VOLUME = Path(SCRATCH) / "disk"
HOME_QUESTION = (
    'Please choose your home folder "home" in this panel and click the "Open" button.\n'
    "(The button will be enabled when you have selected the correct folder.)"
)
QUESTION = HOME_QUESTION.replace('your home folder "home"', 'the volume labeled "BACKUP"')
GONE = [".Trashes/501/old", ".Trashes/501/folder"]
KEPT = ["letter", ".Trashes/502/theirs"]


def mount(*arguments):
    subprocess.run(["mount", *map(str, arguments)], check=True)


class VolumeTrash(CleanupCase):
    def setUp(self):
        self.addCleanup(enter_own_root(str(VOLUME), "/Volumes/WITHOUT TRASH", str(DISK_OF_VOLUME)))
        # Volumes are what comes from a device.
        mount("-t", "tmpfs", "/dev/backup", DISK_OF_VOLUME)
        mount("-t", "tmpfs", "/dev/other", "/Volumes/WITHOUT TRASH")
        self.plug_in()
        super().setUp()
        self.fill_volume()
        self.fill_home()

    def plug_in(self):
        mount("--bind", DISK_OF_VOLUME, VOLUME)

    def fill_volume(self):
        for item in (*KEPT, GONE[0], GONE[1] + "/deep/file"):
            (VOLUME / item).parent.mkdir(parents=True, exist_ok=True)
            (VOLUME / item).write_text(item)

    def choose_trash(self, *questions):
        self.tray.choose("Free Disk Space", "Trash Can")
        for question in questions:
            panel = self.wait_for_panel()
            wait_for(f"the panel to say {question!r}", lambda panel=panel, text=question: text in panel.texts("label"))
            self.grant()

    def assert_emptied(self):
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        self.assertEqual([item for item in GONE + KEPT if (VOLUME / item).exists()], KEPT)

    def test_is_emptied_after_the_volume_was_granted_once(self):
        self.start()
        before = self.facts()
        self.choose_trash(HOME_QUESTION, QUESTION)
        self.assert_emptied()
        self.assert_only_gone(before, DISK["Trash Can"][-1])
        urls = [grant["url"]["relative"] for grant in self.grants()]
        self.assertEqual(urls, [self.home.as_uri() + "/", VOLUME.as_uri() + "/"])

        subprocess.run(["umount", str(VOLUME)], check=True)
        self.plug_in()
        self.tray.stop()
        self.tray.start()
        self.fill_volume()
        self.choose_trash()
        self.assert_emptied()
        self.assertEqual(len(self.grants()), 2)

    def test_is_left_when_the_volume_is_not_granted(self):
        self.start()
        before = self.facts()
        self.choose_trash(HOME_QUESTION)
        panel = wait_for("the panel for the volume", lambda: self.panel_that_says(QUESTION))
        self.press(panel, "Cancel")
        self.answer_alert("Cleanup failed", "Please grant access for the cleanup to succeed", "OK")
        self.assertEqual(self.facts(), before)
        self.assertEqual([item for item in GONE + KEPT if (VOLUME / item).exists()], GONE + KEPT)

    def panel_that_says(self, question):
        panel = self.tray.dialog()
        return panel if panel and question in panel.texts("label") else None

    def test_that_is_a_link_into_the_home_folder_leaves_what_it_leads_to(self):
        for item in GONE:
            (VOLUME / item).rename(VOLUME / item.replace("501/", ""))
        (VOLUME / ".Trashes/501").rmdir()
        (VOLUME / ".Trashes/501").symlink_to(self.home / "Documents")
        self.start()
        before = self.facts()
        self.choose_trash(HOME_QUESTION, QUESTION)
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        self.assert_only_gone(before, DISK["Trash Can"][-1])
