<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CustomAlertWindow</name>
    <message>
        <source>Software update</source>
        <comment>title of the alert that tells there is no newer version</comment>
        <translation>Mise à jour logicielle</translation>
    </message>
    <message>
        <source>OK</source>
        <comment>button that closes the alert</comment>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QuilexHelper</name>
    <message>
        <source>You&apos;re up to date</source>
        <comment>updated</comment>
        <translation>Tout est à jour</translation>
    </message>
    <message>
        <source>%@ is currently the newest version</source>
        <comment>fmt</comment>
        <translation>%@ est actuellement la version la plus récente</translation>
    </message>
    <message>
        <source>Open Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Ouvrir le fond d’écran vidéo</translation>
    </message>
    <message>
        <source>Close Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Fermer le fond d’écran vidéo</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>play/pause</comment>
        <translation>Lire</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>pause play</comment>
        <translation>Mettre en pause</translation>
    </message>
    <message>
        <source>Main Window</source>
        <comment>use to show main window</comment>
        <translation>Fenêtre principale</translation>
    </message>
    <message>
        <source>Quit</source>
        <comment>quit application</comment>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Screen</source>
        <comment>title</comment>
        <translation>Écran</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <comment>Check Update</comment>
        <translation>Rechercher des mises à jour…</translation>
    </message>
    <message>
        <source>Hide Desktop Icon</source>
        <comment>hide desktop icon</comment>
        <translation>Masquer les icônes du bureau</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>Mute desktop video</comment>
        <translation>Couper le son</translation>
    </message>
    <message>
        <source>Integration</source>
        <comment>make up all monitors into one player</comment>
        <translation>Image unique</translation>
    </message>
    <message>
        <source>Mirror</source>
        <comment>each monitor has same content</comment>
        <translation>Dupliquer</translation>
    </message>
    <message>
        <source>Single</source>
        <comment>Only play on one monitor</comment>
        <translation>Un seul écran</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>pause play</comment>
        <translation>Lire</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>play</comment>
        <translation>Mettre en pause</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <comment>version</comment>
        <translation>Version : %@</translation>
    </message>
</context>
<context>
    <name>UpgradeWindow</name>
    <message>
        <source>New version</source>
        <comment>title of the update offer</comment>
        <translation>Nouvelle version</translation>
    </message>
    <message>
        <source>Close</source>
        <comment>button that closes the update offer</comment>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <comment>headline of the update offer</comment>
        <translation>Une nouvelle version est disponible</translation>
    </message>
    <message>
        <source>About the new version</source>
        <comment>accessible name of the text of the update offer</comment>
        <translation>À propos de la nouvelle version</translation>
    </message>
    <message>
        <source>Get the update</source>
        <comment>button of the update offer</comment>
        <translation>Obtenir la mise à jour</translation>
    </message>
</context>
</TS>
