<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>CustomAlertWindow</name>
    <message>
        <source>Software update</source>
        <comment>title of the alert that tells there is no newer version</comment>
        <translation>Atualização de software</translation>
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
        <translation>Tudo está atualizado</translation>
    </message>
    <message>
        <source>%@ is currently the newest version</source>
        <comment>fmt</comment>
        <translation>%@ é atualmente a versão mais recente</translation>
    </message>
    <message>
        <source>Open Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Abrir papel de parede de vídeo</translation>
    </message>
    <message>
        <source>Close Video Wallpaper</source>
        <comment>start/stop Video Desktop</comment>
        <translation>Fechar papel de parede de vídeo</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>play/pause</comment>
        <translation>Reproduzir</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>pause play</comment>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Main Window</source>
        <comment>use to show main window</comment>
        <translation>Janela principal</translation>
    </message>
    <message>
        <source>Quit</source>
        <comment>quit application</comment>
        <translation>Sair</translation>
    </message>
    <message>
        <source>Screen</source>
        <comment>title</comment>
        <translation>Tela</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <comment>Check Update</comment>
        <translation>Verificar atualizações...</translation>
    </message>
    <message>
        <source>Hide Desktop Icon</source>
        <comment>hide desktop icon</comment>
        <translation>Ocultar ícones da área de trabalho</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>Mute desktop video</comment>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>Integration</source>
        <comment>make up all monitors into one player</comment>
        <translation>Integração</translation>
    </message>
    <message>
        <source>Mirror</source>
        <comment>each monitor has same content</comment>
        <translation>Espelhar</translation>
    </message>
    <message>
        <source>Single</source>
        <comment>Only play on one monitor</comment>
        <translation>Tela única</translation>
    </message>
    <message>
        <source>Play</source>
        <comment>pause play</comment>
        <translation>Reproduzir</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>play</comment>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <comment>version</comment>
        <translation>Versão: %@</translation>
    </message>
</context>
<context>
    <name>UpgradeWindow</name>
    <message>
        <source>New version</source>
        <comment>title of the update offer</comment>
        <translation>Nova versão</translation>
    </message>
    <message>
        <source>Close</source>
        <comment>button that closes the update offer</comment>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <comment>headline of the update offer</comment>
        <translation>Uma nova versão está disponível</translation>
    </message>
    <message>
        <source>About the new version</source>
        <comment>accessible name of the text of the update offer</comment>
        <translation>Sobre a nova versão</translation>
    </message>
    <message>
        <source>Get the update</source>
        <comment>button of the update offer</comment>
        <translation>Obter a atualização</translation>
    </message>
</context>
<context>
    <name>quilex::CardDelegate</name>
    <message>
        <source>File missing</source>
        <translation>Arquivo ausente</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Escolhido</translation>
    </message>
    <message>
        <source>On the desktop</source>
        <translation>Na área de trabalho</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Em pausa</translation>
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
        <translation>Próximo vídeo</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>Iniciar ao entrar na sessão</translation>
    </message>
    <message>
        <source>One picture across all monitors</source>
        <translation>Uma imagem em todas as telas</translation>
    </message>
    <message>
        <source>The same picture on each</source>
        <translation>A mesma imagem em cada uma</translation>
    </message>
    <message>
        <source>One monitor only</source>
        <translation>Somente uma tela</translation>
    </message>
    <message>
        <source>Repeat one video</source>
        <translation>Repetir um vídeo</translation>
    </message>
    <message>
        <source>Play the list</source>
        <translation>Reproduzir a lista</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>Aleatório</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproduzir</translation>
    </message>
    <message>
        <source>Close wallpaper</source>
        <translation>Fechar o papel de parede</translation>
    </message>
    <message>
        <source>Open wallpaper</source>
        <translation>Abrir o papel de parede</translation>
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
        <translation>Área de trabalho</translation>
    </message>
    <message>
        <source>Arrangement</source>
        <translation>Disposição</translation>
    </message>
    <message>
        <source>Playing order</source>
        <translation>Ordem de reprodução</translation>
    </message>
    <message>
        <source>No video is chosen</source>
        <translation>Nenhum vídeo escolhido</translation>
    </message>
    <message>
        <source>This desktop has no status area for the wallpaper&apos;s menu. Everything in that menu can be done here.</source>
        <translation>Esta área de trabalho não tem área de status para o menu do papel de parede. Tudo o que há nesse menu pode ser feito aqui.</translation>
    </message>
    <message>
        <source>The picture stands still because %1.</source>
        <translation>A imagem está parada (%1).</translation>
    </message>
</context>
<context>
    <name>quilex::LibraryModel</name>
    <message>
        <source>chosen</source>
        <translation>escolhido</translation>
    </message>
    <message>
        <source>playing on the desktop</source>
        <translation>em reprodução na área de trabalho</translation>
    </message>
    <message>
        <source>paused on the desktop</source>
        <translation>em pausa na área de trabalho</translation>
    </message>
    <message>
        <source>file missing</source>
        <translation>arquivo ausente</translation>
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
        <translation>Adicionar vídeos…</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Pesquisar</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>Limpar a pesquisa</translation>
    </message>
    <message>
        <source>Order of the videos</source>
        <translation>Ordem dos vídeos</translation>
    </message>
    <message>
        <source>By title</source>
        <translation>Por título</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Mais novos primeiro</translation>
    </message>
    <message>
        <source>Longest first</source>
        <translation>Mais longos primeiro</translation>
    </message>
    <message>
        <source>Largest picture first</source>
        <translation>Maior imagem primeiro</translation>
    </message>
    <message>
        <source>Size of the covers</source>
        <translation>Tamanho das miniaturas</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>&amp;Biblioteca</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>Adicionar uma pasta…</translation>
    </message>
    <message>
        <source>Paste files</source>
        <translation>Colar arquivos</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>Desfazer a remoção</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>&amp;Video</source>
        <translation>&amp;Vídeo</translation>
    </message>
    <message>
        <source>Show on the desktop</source>
        <translation>Mostrar na área de trabalho</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renomear</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>Mostrar no gerenciador de arquivos</translation>
    </message>
    <message>
        <source>Find the file again…</source>
        <translation>Encontrar o arquivo novamente…</translation>
    </message>
    <message>
        <source>Remove from the library</source>
        <translation>Remover da biblioteca</translation>
    </message>
    <message>
        <source>V&amp;iew</source>
        <translation>E&amp;xibir</translation>
    </message>
    <message>
        <source>Larger covers</source>
        <translation>Miniaturas maiores</translation>
    </message>
    <message>
        <source>Smaller covers</source>
        <translation>Miniaturas menores</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Área de trabalho</translation>
    </message>
    <message>
        <source>&amp;Desktop</source>
        <translation>Área de &amp;trabalho</translation>
    </message>
    <message>
        <source>Looking for videos…</source>
        <translation>Procurando vídeos…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Add videos</source>
        <translation>Adicionar vídeos</translation>
    </message>
    <message>
        <source>Add a folder of videos</source>
        <translation>Adicionar uma pasta de vídeos</translation>
    </message>
    <message>
        <source>Where is the file now?</source>
        <translation>Onde está o arquivo agora?</translation>
    </message>
    <message>
        <source>There are no files in the clipboard.</source>
        <translation>Não há arquivos na área de transferência.</translation>
    </message>
    <message>
        <source>The wallpaper is not running.</source>
        <translation>O papel de parede em vídeo não está em execução.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Iniciar</translation>
    </message>
    <message>
        <source>There is no session bus, so it is not known whether the wallpaper runs.</source>
        <translation>Não há barramento de sessão, por isso não se sabe se o papel de parede está em execução.</translation>
    </message>
    <message>
        <source>The library cannot be read</source>
        <translation>Não é possível ler a biblioteca</translation>
    </message>
    <message>
        <source>The library is empty</source>
        <translation>A biblioteca está vazia</translation>
    </message>
    <message>
        <source>Drop videos or folders here, or choose “Add videos…”.</source>
        <translation>Solte aqui vídeos ou pastas, ou escolha “Adicionar vídeos…”.</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Nada encontrado</translation>
    </message>
    <message>
        <source>No title contains “%1”.</source>
        <translation>Nenhum título contém “%1”.</translation>
    </message>
    <message>
        <source>These loops come with Quilex; double-click one to show it on the desktop. For more, drop videos or a folder of them here, such as your Videos folder.</source>
        <translation>Estes vídeos acompanham o Quilex; clique duas vezes em um deles para mostrá-lo na área de trabalho. Para ter mais, solte aqui vídeos ou uma pasta, como a sua pasta Vídeos.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Desfazer</translation>
    </message>
    <message>
        <source>Adding %1 of %2: %3</source>
        <translation>Adicionando %1 de %2: %3</translation>
    </message>
    <message>
        <source>No videos were found there.</source>
        <translation>Nenhum vídeo foi encontrado ali.</translation>
    </message>
    <message>
        <source>%1 is in the library already.</source>
        <translation>%1 já está na biblioteca.</translation>
    </message>
    <message>
        <source>%1 was found again.</source>
        <translation>%1 foi encontrado novamente.</translation>
    </message>
    <message>
        <source>Added: %1.</source>
        <translation>Adicionados: %1.</translation>
    </message>
    <message>
        <source>In the library already: %1.</source>
        <translation>Já na biblioteca: %1.</translation>
    </message>
    <message>
        <source>Found again: %1.</source>
        <translation>Encontrados novamente: %1.</translation>
    </message>
    <message>
        <source>Cannot be played: %1.</source>
        <translation>Não podem ser reproduzidos: %1.</translation>
    </message>
    <message>
        <source>The rest was cancelled.</source>
        <translation>O restante foi cancelado.</translation>
    </message>
    <message>
        <source>Show why</source>
        <translation>Mostrar por quê</translation>
    </message>
    <message>
        <source>Files that cannot be played</source>
        <translation>Arquivos que não podem ser reproduzidos</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Arquivo</translation>
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
        <translation>Progresso</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
</context>
<context>
    <name>quilex::MonitorView</name>
    <message>
        <source>Monitors</source>
        <translation>Telas</translation>
    </message>
    <message>
        <source>Monitor %1: %2, %3</source>
        <translation>Tela %1: %2, %3</translation>
    </message>
    <message>
        <source>Click to play on this monitor only</source>
        <translation>Clique para reproduzir somente nesta tela</translation>
    </message>
</context>
<context>
    <name>quilex::WindowLogic</name>
    <message>
        <source>Removed from the library: %1. The files stay where they are.</source>
        <translation>Removido da biblioteca: %1. Os arquivos ficam onde estão.</translation>
    </message>
    <message>
        <source>The wallpaper cannot be started: %1 is missing.</source>
        <translation>Não é possível iniciar o papel de parede: %1 está ausente.</translation>
    </message>
</context>
</TS>
