<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>CustomAlertWindow</name>
    <message>
        <source>Software update</source>
        <comment>title of the alert that tells there is no newer version</comment>
        <translation>Actualización de software</translation>
    </message>
    <message>
        <source>OK</source>
        <comment>button that closes the alert</comment>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>QuilexHelper</name>
    <message>
        <source>You&apos;re up to date</source>
        <comment>updated</comment>
        <translation>Todo está actualizado</translation>
    </message>
    <message>
        <source>%@ is currently the newest version</source>
        <comment>fmt</comment>
        <translation>%@ es actualmente la versión más reciente</translation>
    </message>
    <message>
        <source>Open Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Abrir el fondo de vídeo</translation>
    </message>
    <message>
        <source>Close Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Cerrar el fondo de vídeo</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>play/pause</comment>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>pause play</comment>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Main Window</source>
        <comment>use to show main window</comment>
        <translation>Ventana principal</translation>
    </message>
    <message>
        <source>Quit</source>
        <comment>quit application</comment>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Screen</source>
        <comment>title</comment>
        <translation>Pantalla</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <comment>Check Update</comment>
        <translation>Buscar actualizaciones...</translation>
    </message>
    <message>
        <source>Hide Desktop Icon</source>
        <comment>hide desktop icon</comment>
        <translation>Ocultar los iconos del escritorio</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>Mute desktop video</comment>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>Integration</source>
        <comment>make up all monitors into one player</comment>
        <translation>Unificar</translation>
    </message>
    <message>
        <source>Mirror</source>
        <comment>each monitor has same content</comment>
        <translation>Duplicar</translation>
    </message>
    <message>
        <source>Single</source>
        <comment>Only play on one monitor</comment>
        <translation>Una sola pantalla</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>pause play</comment>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>play</comment>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <comment>version</comment>
        <translation>Versión: %@</translation>
    </message>
</context>
<context>
    <name>UpgradeWindow</name>
    <message>
        <source>New version</source>
        <comment>title of the update offer</comment>
        <translation>Nueva versión</translation>
    </message>
    <message>
        <source>Close</source>
        <comment>button that closes the update offer</comment>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <comment>headline of the update offer</comment>
        <translation>Hay una nueva versión disponible</translation>
    </message>
    <message>
        <source>About the new version</source>
        <comment>accessible name of the text of the update offer</comment>
        <translation>Acerca de la nueva versión</translation>
    </message>
    <message>
        <source>Get the update</source>
        <comment>button of the update offer</comment>
        <translation>Obtener la actualización</translation>
    </message>
</context>
<context>
    <name>quilex::CardDelegate</name>
    <message>
        <source>File missing</source>
        <translation>Falta el archivo</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Elegido</translation>
    </message>
    <message>
        <source>On the desktop</source>
        <translation>En el escritorio</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pausa</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Título</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopActions</name>
    <message>
        <source>Next video</source>
        <translation>Vídeo siguiente</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>Iniciar al entrar en la sesión</translation>
    </message>
    <message>
        <source>One picture across all monitors</source>
        <translation>Una imagen en todas las pantallas</translation>
    </message>
    <message>
        <source>The same picture on each</source>
        <translation>La misma imagen en cada una</translation>
    </message>
    <message>
        <source>One monitor only</source>
        <translation>Solo una pantalla</translation>
    </message>
    <message>
        <source>Repeat one video</source>
        <translation>Repetir un vídeo</translation>
    </message>
    <message>
        <source>Play the list</source>
        <translation>Reproducir la lista</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>Aleatorio</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Close wallpaper</source>
        <translation>Cerrar el fondo</translation>
    </message>
    <message>
        <source>Open wallpaper</source>
        <translation>Abrir el fondo</translation>
    </message>
</context>
<context>
    <name>quilex::DesktopPanel</name>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Escritorio</translation>
    </message>
    <message>
        <source>Arrangement</source>
        <translation>Disposición</translation>
    </message>
    <message>
        <source>Playing order</source>
        <translation>Orden de reproducción</translation>
    </message>
    <message>
        <source>No video is chosen</source>
        <translation>No se ha elegido ningún vídeo</translation>
    </message>
    <message>
        <source>This desktop has no status area for the wallpaper&apos;s menu. Everything in that menu can be done here.</source>
        <translation>Este escritorio no tiene un área de estado para el menú del fondo. Todo lo de ese menú se puede hacer aquí.</translation>
    </message>
    <message>
        <source>The picture stands still because %1.</source>
        <translation>La imagen está detenida (%1).</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryModel</name>
    <message>
        <source>chosen</source>
        <translation>elegido</translation>
    </message>
    <message>
        <source>playing on the desktop</source>
        <translation>se reproduce en el escritorio</translation>
    </message>
    <message>
        <source>paused on the desktop</source>
        <translation>en pausa en el escritorio</translation>
    </message>
    <message>
        <source>file missing</source>
        <translation>falta el archivo</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryView</name>
    <message>
        <source>Videos</source>
        <translation>Vídeos</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryWindow</name>
    <message>
        <source>Add videos…</source>
        <translation>Añadir vídeos…</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>Borrar la búsqueda</translation>
    </message>
    <message>
        <source>Order of the videos</source>
        <translation>Orden de los vídeos</translation>
    </message>
    <message>
        <source>By title</source>
        <translation>Por título</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Los más nuevos primero</translation>
    </message>
    <message>
        <source>Longest first</source>
        <translation>Los más largos primero</translation>
    </message>
    <message>
        <source>Largest picture first</source>
        <translation>La imagen más grande primero</translation>
    </message>
    <message>
        <source>Size of the covers</source>
        <translation>Tamaño de las miniaturas</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Biblioteca</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>Añadir una carpeta…</translation>
    </message>
    <message>
        <source>Paste files</source>
        <translation>Pegar archivos</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>Deshacer la eliminación</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>&amp;Video</source>
        <translation>&amp;Vídeo</translation>
    </message>
    <message>
        <source>Show on the desktop</source>
        <translation>Mostrar en el escritorio</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Cambiar el nombre</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>Mostrar en el gestor de archivos</translation>
    </message>
    <message>
        <source>Find the file again…</source>
        <translation>Volver a encontrar el archivo…</translation>
    </message>
    <message>
        <source>Remove from the library</source>
        <translation>Quitar de la biblioteca</translation>
    </message>
    <message>
        <source>V&amp;iew</source>
        <translation>V&amp;er</translation>
    </message>
    <message>
        <source>Larger covers</source>
        <translation>Miniaturas más grandes</translation>
    </message>
    <message>
        <source>Smaller covers</source>
        <translation>Miniaturas más pequeñas</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Escritorio</translation>
    </message>
    <message>
        <source>&amp;Desktop</source>
        <translation>&amp;Escritorio</translation>
    </message>
    <message>
        <source>Looking for videos…</source>
        <translation>Buscando vídeos…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Add videos</source>
        <translation>Añadir vídeos</translation>
    </message>
    <message>
        <source>Add a folder of videos</source>
        <translation>Añadir una carpeta de vídeos</translation>
    </message>
    <message>
        <source>Where is the file now?</source>
        <translation>¿Dónde está ahora el archivo?</translation>
    </message>
    <message>
        <source>There are no files in the clipboard.</source>
        <translation>No hay archivos en el portapapeles.</translation>
    </message>
    <message>
        <source>The wallpaper is not running.</source>
        <translation>El fondo de vídeo no está en marcha.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Iniciar</translation>
    </message>
    <message>
        <source>There is no session bus, so it is not known whether the wallpaper runs.</source>
        <translation>No hay bus de sesión, así que no se sabe si el fondo está en marcha.</translation>
    </message>
    <message>
        <source>The library cannot be read</source>
        <translation>No se puede leer la biblioteca</translation>
    </message>
    <message>
        <source>The library is empty</source>
        <translation>La biblioteca está vacía</translation>
    </message>
    <message>
        <source>Drop videos or folders here, or choose “Add videos…”.</source>
        <translation>Suelte aquí vídeos o carpetas, o elija «Añadir vídeos…».</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>No se ha encontrado nada</translation>
    </message>
    <message>
        <source>No title contains “%1”.</source>
        <translation>Ningún título contiene «%1».</translation>
    </message>
    <message>
        <source>These loops come with Quilex; double-click one to show it on the desktop. For more, drop videos or a folder of them here, such as your Videos folder.</source>
        <translation>Estos bucles vienen con Quilex; haga doble clic en uno para mostrarlo en el escritorio. Para tener más, suelte aquí vídeos o una carpeta, por ejemplo su carpeta Vídeos.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>Adding %1 of %2: %3</source>
        <translation>Añadiendo %1 de %2: %3</translation>
    </message>
    <message>
        <source>No videos were found there.</source>
        <translation>No se encontraron vídeos ahí.</translation>
    </message>
    <message>
        <source>%1 is in the library already.</source>
        <translation>%1 ya está en la biblioteca.</translation>
    </message>
    <message>
        <source>%1 was found again.</source>
        <translation>Se ha vuelto a encontrar %1.</translation>
    </message>
    <message>
        <source>Added: %1.</source>
        <translation>Añadidos: %1.</translation>
    </message>
    <message>
        <source>In the library already: %1.</source>
        <translation>Ya en la biblioteca: %1.</translation>
    </message>
    <message>
        <source>Found again: %1.</source>
        <translation>Encontrados de nuevo: %1.</translation>
    </message>
    <message>
        <source>Cannot be played: %1.</source>
        <translation>No se pueden reproducir: %1.</translation>
    </message>
    <message>
        <source>The rest was cancelled.</source>
        <translation>El resto se canceló.</translation>
    </message>
    <message>
        <source>Show why</source>
        <translation>Mostrar por qué</translation>
    </message>
    <message>
        <source>Files that cannot be played</source>
        <translation>Archivos que no se pueden reproducir</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Archivo</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Motivo</translation>
    </message>
</context>
<context>
    <name>quilex::MessageBar</name>
    <message>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
</context>
<context>
    <name>quilex::MonitorView</name>
    <message>
        <source>Monitors</source>
        <translation>Pantallas</translation>
    </message>
    <message>
        <source>Monitor %1: %2, %3</source>
        <translation>Pantalla %1: %2, %3</translation>
    </message>
    <message>
        <source>Click to play on this monitor only</source>
        <translation>Haga clic para reproducir solo en esta pantalla</translation>
    </message>
</context>
<context>
    <name>quilex::WindowLogic</name>
    <message>
        <source>Removed from the library: %1. The files stay where they are.</source>
        <translation>Quitado de la biblioteca: %1. Los archivos se quedan donde están.</translation>
    </message>
    <message>
        <source>The wallpaper cannot be started: %1 is missing.</source>
        <translation>No se puede iniciar el fondo: falta %1.</translation>
    </message>
</context>
</TS>
