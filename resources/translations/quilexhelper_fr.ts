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
<context>
    <name>quilex::CardDelegate</name>
    <message>
        <source>File missing</source>
        <translation>Fichier manquant</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Choisie</translation>
    </message>
    <message>
        <source>On the desktop</source>
        <translation>Sur le bureau</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titre</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopActions</name>
    <message>
        <source>Next video</source>
        <translation>Vidéo suivante</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Couper le son</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>One picture across all monitors</source>
        <translation>Une image sur tous les écrans</translation>
    </message>
    <message>
        <source>The same picture on each</source>
        <translation>La même image sur chacun</translation>
    </message>
    <message>
        <source>One monitor only</source>
        <translation>Un seul écran</translation>
    </message>
    <message>
        <source>Repeat one video</source>
        <translation>Répéter une vidéo</translation>
    </message>
    <message>
        <source>Play the list</source>
        <translation>Lire la liste</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>Aléatoire</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lire</translation>
    </message>
    <message>
        <source>Close wallpaper</source>
        <translation>Fermer le fond d’écran</translation>
    </message>
    <message>
        <source>Open wallpaper</source>
        <translation>Ouvrir le fond d’écran</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopPanel</name>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Bureau</translation>
    </message>
    <message>
        <source>Arrangement</source>
        <translation>Disposition</translation>
    </message>
    <message>
        <source>Playing order</source>
        <translation>Ordre de lecture</translation>
    </message>
    <message>
        <source>No video is chosen</source>
        <translation>Aucune vidéo n’est choisie</translation>
    </message>
    <message>
        <source>This desktop has no status area for the wallpaper&apos;s menu. Everything in that menu can be done here.</source>
        <translation>Ce bureau n’a pas de zone d’état pour le menu du fond d’écran. Tout ce que contient ce menu peut se faire ici.</translation>
    </message>
    <message>
        <source>The picture stands still because %1.</source>
        <translation>L’image est arrêtée (%1).</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryModel</name>
    <message>
        <source>chosen</source>
        <translation>choisie</translation>
    </message>
    <message>
        <source>playing on the desktop</source>
        <translation>en lecture sur le bureau</translation>
    </message>
    <message>
        <source>paused on the desktop</source>
        <translation>en pause sur le bureau</translation>
    </message>
    <message>
        <source>file missing</source>
        <translation>fichier manquant</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryView</name>
    <message>
        <source>Videos</source>
        <translation>Vidéos</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryWindow</name>
    <message>
        <source>Add videos…</source>
        <translation>Ajouter des vidéos…</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>Effacer la recherche</translation>
    </message>
    <message>
        <source>Order of the videos</source>
        <translation>Ordre des vidéos</translation>
    </message>
    <message>
        <source>By title</source>
        <translation>Par titre</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Les plus récentes d’abord</translation>
    </message>
    <message>
        <source>Longest first</source>
        <translation>Les plus longues d’abord</translation>
    </message>
    <message>
        <source>Largest picture first</source>
        <translation>La plus grande image d’abord</translation>
    </message>
    <message>
        <source>Size of the covers</source>
        <translation>Taille des vignettes</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Bibliothèque</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>Ajouter un dossier…</translation>
    </message>
    <message>
        <source>Paste files</source>
        <translation>Coller des fichiers</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>Annuler le retrait</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>&amp;Video</source>
        <translation>&amp;Vidéo</translation>
    </message>
    <message>
        <source>Show on the desktop</source>
        <translation>Afficher sur le bureau</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>Afficher dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Find the file again…</source>
        <translation>Retrouver le fichier…</translation>
    </message>
    <message>
        <source>Remove from the library</source>
        <translation>Retirer de la bibliothèque</translation>
    </message>
    <message>
        <source>V&amp;iew</source>
        <translation>A&amp;ffichage</translation>
    </message>
    <message>
        <source>Larger covers</source>
        <translation>Vignettes plus grandes</translation>
    </message>
    <message>
        <source>Smaller covers</source>
        <translation>Vignettes plus petites</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Bureau</translation>
    </message>
    <message>
        <source>&amp;Desktop</source>
        <translation>B&amp;ureau</translation>
    </message>
    <message>
        <source>Looking for videos…</source>
        <translation>Recherche de vidéos…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Add videos</source>
        <translation>Ajouter des vidéos</translation>
    </message>
    <message>
        <source>Add a folder of videos</source>
        <translation>Ajouter un dossier de vidéos</translation>
    </message>
    <message>
        <source>Where is the file now?</source>
        <translation>Où est le fichier maintenant ?</translation>
    </message>
    <message>
        <source>There are no files in the clipboard.</source>
        <translation>Il n’y a pas de fichiers dans le presse-papiers.</translation>
    </message>
    <message>
        <source>The wallpaper is not running.</source>
        <translation>Le fond d’écran vidéo n’est pas lancé.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Lancer</translation>
    </message>
    <message>
        <source>There is no session bus, so it is not known whether the wallpaper runs.</source>
        <translation>Il n’y a pas de bus de session : impossible de savoir si le fond d’écran est lancé.</translation>
    </message>
    <message>
        <source>The library cannot be read</source>
        <translation>La bibliothèque ne peut pas être lue</translation>
    </message>
    <message>
        <source>The library is empty</source>
        <translation>La bibliothèque est vide</translation>
    </message>
    <message>
        <source>Drop videos or folders here, or choose “Add videos…”.</source>
        <translation>Déposez ici des vidéos ou des dossiers, ou choisissez « Ajouter des vidéos… ».</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Rien trouvé</translation>
    </message>
    <message>
        <source>No title contains “%1”.</source>
        <translation>Aucun titre ne contient « %1 ».</translation>
    </message>
    <message>
        <source>These loops come with Quilex; double-click one to show it on the desktop. For more, drop videos or a folder of them here, such as your Videos folder.</source>
        <translation>Ces boucles sont fournies avec Quilex ; double-cliquez sur l’une d’elles pour l’afficher sur le bureau. Pour en avoir plus, déposez ici des vidéos ou un dossier, par exemple votre dossier Vidéos.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Adding %1 of %2: %3</source>
        <translation>Ajout de %1 sur %2 : %3</translation>
    </message>
    <message>
        <source>No videos were found there.</source>
        <translation>Aucune vidéo n’a été trouvée à cet endroit.</translation>
    </message>
    <message>
        <source>%1 is in the library already.</source>
        <translation>%1 est déjà dans la bibliothèque.</translation>
    </message>
    <message>
        <source>%1 was found again.</source>
        <translation>%1 a été retrouvée.</translation>
    </message>
    <message>
        <source>Added: %1.</source>
        <translation>Ajoutées : %1.</translation>
    </message>
    <message>
        <source>In the library already: %1.</source>
        <translation>Déjà dans la bibliothèque : %1.</translation>
    </message>
    <message>
        <source>Found again: %1.</source>
        <translation>Retrouvées : %1.</translation>
    </message>
    <message>
        <source>Cannot be played: %1.</source>
        <translation>Illisibles : %1.</translation>
    </message>
    <message>
        <source>The rest was cancelled.</source>
        <translation>Le reste a été annulé.</translation>
    </message>
    <message>
        <source>Show why</source>
        <translation>Voir pourquoi</translation>
    </message>
    <message>
        <source>Files that cannot be played</source>
        <translation>Fichiers illisibles</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Raison</translation>
    </message>
</context>
<context>
    <name>quilex::MessageBar</name>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>quilex::MonitorView</name>
    <message>
        <source>Monitors</source>
        <translation>Écrans</translation>
    </message>
    <message>
        <source>Monitor %1: %2, %3</source>
        <translation>Écran %1 : %2, %3</translation>
    </message>
    <message>
        <source>Click to play on this monitor only</source>
        <translation>Cliquez pour lire sur cet écran seulement</translation>
    </message>
</context>
<context>
    <name>quilex::WindowLogic</name>
    <message>
        <source>Removed from the library: %1. The files stay where they are.</source>
        <translation>Retiré de la bibliothèque : %1. Les fichiers restent à leur place.</translation>
    </message>
    <message>
        <source>The wallpaper cannot be started: %1 is missing.</source>
        <translation>Le fond d’écran ne peut pas être lancé : %1 est introuvable.</translation>
    </message>
</context>
</TS>
