<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU">
<context>
    <name>Text</name>
    <message>
        <source>an exception of an unknown class</source>
        <translation>неизвестная ошибка драйвера</translation>
    </message>
    <message>
        <source>Show the plugin and the register&apos;s settings</source>
        <translation>Показать плагин и настройки кассы</translation>
    </message>
    <message>
        <source>Register receipts and show their fiscal results</source>
        <translation>Зарегистрировать чеки и показать фискальные данные</translation>
    </message>
    <message>
        <source>Send receipts without waiting; shows the service&apos;s identifiers</source>
        <translation>Отправить чеки без ожидания; показывает идентификаторы сервиса</translation>
    </message>
    <message>
        <source>Ask the service about a document</source>
        <translation>Запросить у сервиса данные о документе</translation>
    </message>
    <message>
        <source>Show what would be sent for receipts; sends nothing</source>
        <translation>Показать, что было бы отправлено; ничего не отправляет</translation>
    </message>
    <message>
        <source>Example:
  %1</source>
        <translation>Пример:
  %1</translation>
    </message>
    <message>
        <source>One line of JSON for each result</source>
        <translation>Результаты в JSON, по строке на каждый</translation>
    </message>
    <message>
        <source>The service&apos;s identifier of the document</source>
        <translation>Идентификатор документа у сервиса</translation>
    </message>
    <message>
        <source>Receipts as a JSON object or JSON Lines; - is standard input</source>
        <translation>Чеки в виде объекта JSON или JSON Lines; - — стандартный ввод</translation>
    </message>
    <message>
        <source>Drives a fiscal register through its plugin.</source>
        <translation>Управляет кассой через её плагин.</translation>
    </message>
    <message>
        <source>Standard output: %1</source>
        <translation>Стандартный вывод: %1</translation>
    </message>
    <message>
        <source>the driver sent nothing</source>
        <translation>драйвер ничего не отправил</translation>
    </message>
    <message>
        <source>%1: %2 s</source>
        <translation>%1: %2 с</translation>
    </message>
    <message>
        <source>(set)</source>
        <translation>(задан)</translation>
    </message>
    <message>
        <source>not used</source>
        <translation>не используется</translation>
    </message>
    <message>
        <source>read only</source>
        <translation>только чтение</translation>
    </message>
    <message>
        <source>Plugin</source>
        <translation>Плагин</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Имя</translation>
    </message>
    <message>
        <source>Interface</source>
        <translation>Интерфейс</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Устройство</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>Описание</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Тип</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>По умолчанию</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Значение</translation>
    </message>
    <message>
        <source>the factory has no slot getObject</source>
        <translation>у фабрики нет слота getObject</translation>
    </message>
    <message>
        <source>the factory did not return a fiscal register</source>
        <translation>фабрика не вернула кассу</translation>
    </message>
    <message>
        <source>the register has no slot init</source>
        <translation>у кассы нет слота init</translation>
    </message>
    <message>
        <source>the register has no driver after init</source>
        <translation>у кассы нет драйвера после init</translation>
    </message>
    <message>
        <source>the driver does not implement VposFrDriver, the interface of a cloud register</source>
        <translation>драйвер не реализует VposFrDriver — интерфейс облачной кассы</translation>
    </message>
    <message>
        <source>%1: the file is not in UTF-8</source>
        <translation>%1: файл не в UTF-8</translation>
    </message>
    <message>
        <source>the section name has no closing &quot;]&quot;</source>
        <translation>имя секции не закрыто скобкой «]»</translation>
    </message>
    <message>
        <source>expected &quot;key = value&quot;, a [section] or a # comment</source>
        <translation>ожидалось «ключ = значение», [секция] или # комментарий</translation>
    </message>
    <message>
        <source>the key precedes the first [section]</source>
        <translation>ключ указан до первой [секции]</translation>
    </message>
    <message>
        <source>The service could not register the receipt</source>
        <translation>Сервис не смог зарегистрировать чек</translation>
    </message>
    <message>
        <source>No fiscal-register plugin in %1. Name one with --plugin FILE.</source>
        <translation>Нет плагина кассы в %1. Укажите его: --plugin FILE.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: cannot be copied: %2</source>
        <translation>%1: не удалось скопировать: %2</translation>
    </message>
    <message>
        <source>a receipt may not be larger than 16 MiB</source>
        <translation>чек не может быть больше 16 МиБ</translation>
    </message>
    <message>
        <source>only the single receipt of a file may span several lines; put each receipt on one line</source>
        <translation>занимать несколько строк может только единственный чек файла; запишите каждый чек в одну строку</translation>
    </message>
    <message>
        <source>the receipt is nested too deeply</source>
        <translation>слишком глубокая вложенность</translation>
    </message>
    <message>
        <source>the key occurs twice in one object</source>
        <translation>ключ встречается в объекте дважды</translation>
    </message>
    <message>
        <source>not JSON: %1</source>
        <translation>не JSON: %1</translation>
    </message>
    <message>
        <source>Nothing was sent. Correct the receipts and run the command again.</source>
        <translation>Ничего не отправлено. Исправьте чеки и запустите команду ещё раз.</translation>
    </message>
    <message>
        <source>%1: the file contains no receipt</source>
        <translation>%1: в файле нет ни одного чека</translation>
    </message>
    <message>
        <source>%1: /id: the same id is used at %2; the service would treat the second receipt as a repeat of the first</source>
        <translation>%1: /id: такой id уже есть в %2; сервис принял бы второй чек за повтор первого</translation>
    </message>
    <message>
        <source>%1: the file has changed since it was checked; the rest was not sent</source>
        <translation>%1: файл изменился после проверки; остальное не отправлено</translation>
    </message>
    <message>
        <source>%1: no password in UTF-8 on the first line</source>
        <translation>%1: в первой строке нет пароля в UTF-8</translation>
    </message>
    <message>
        <source>set password or passwordFile, not both</source>
        <translation>укажите password или passwordFile, но не оба</translation>
    </message>
    <message>
        <source>%1: section [register] lacks &quot;%2&quot;</source>
        <translation>%1: в секции [register] нет «%2»</translation>
    </message>
    <message>
        <source>the value of %1 must be of type %2</source>
        <translation>значение %1 должно быть типа %2</translation>
    </message>
    <message>
        <source>the register refused the value of %1</source>
        <translation>касса не приняла значение %1</translation>
    </message>
    <message>
        <source>the register does not use &quot;%1&quot;</source>
        <translation>касса не использует «%1»</translation>
    </message>
    <message>
        <source>%1: the register does not support [driverOptions]</source>
        <translation>%1: касса не поддерживает [driverOptions]</translation>
    </message>
    <message>
        <source>Nothing was registered. Correct the cause and run the receipt again.</source>
        <translation>Ничего не зарегистрировано. Устраните причину и отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>It may or may not be registered. Running the same file again is safe: a receipt that the service already has is not registered twice.</source>
        <translation>Чек, возможно, зарегистрирован. Отправить тот же файл ещё раз безопасно: чек, который у сервиса уже есть, второй раз не регистрируется.</translation>
    </message>
    <message>
        <source>Nothing was registered, and this id is used up: sent again, it only returns the failed document. Give the sale a new id and run it again.</source>
        <translation>Ничего не зарегистрировано, и этот id повторно использовать нельзя: сервис вернёт тот же документ с ошибкой. Дайте продаже новый id и отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>This sale is NOT registered. Give it an id of its own and run it again.</source>
        <translation>Эта продажа НЕ зарегистрирована. Дайте ей собственный id и отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>The id already belongs to another receipt, registered with the total %1 instead of %2</source>
        <translation>Этот id уже принадлежит другому чеку, зарегистрированному с итогом %1 вместо %2</translation>
    </message>
    <message>
        <source>The receipt was refused</source>
        <translation>Чек отклонён</translation>
    </message>
    <message>
        <source>The service&apos;s answer does not say whether the receipt is registered</source>
        <translation>Из ответа сервиса не видно, зарегистрирован ли чек</translation>
    </message>
    <message>
        <source>accepted</source>
        <translation>принят</translation>
    </message>
    <message>
        <source>registered by an earlier attempt</source>
        <translation>зарегистрирован предыдущей попыткой</translation>
    </message>
    <message>
        <source>registered</source>
        <translation>зарегистрирован</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>отклонён</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>результат неизвестен</translation>
    </message>
    <message>
        <source>%1 (code %2)</source>
        <translation>%1 (код %2)</translation>
    </message>
    <message>
        <source>Cause</source>
        <translation>Причина</translation>
    </message>
    <message>
        <source>Service&apos;s identifier</source>
        <translation>Идентификатор у сервиса</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>Дата и время</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Итог</translation>
    </message>
    <message>
        <source>Taxation system</source>
        <translation>Система налогообложения</translation>
    </message>
    <message>
        <source>Register</source>
        <translation>Рег. номер кассы</translation>
    </message>
    <message>
        <source>Fiscal storage</source>
        <translation>Фискальный накопитель</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Смена</translation>
    </message>
    <message>
        <source>Fiscal document</source>
        <translation>Фискальный документ</translation>
    </message>
    <message>
        <source>Fiscal sign</source>
        <translation>Фискальный признак</translation>
    </message>
    <message>
        <source>Text of the QR code</source>
        <translation>Текст QR-кода</translation>
    </message>
    <message>
        <source>Receipt</source>
        <translation>Чек</translation>
    </message>
    <message>
        <source>%1: the driver refused option 0x%2</source>
        <translation>%1: драйвер не принял опцию 0x%2</translation>
    </message>
    <message>
        <source>Receipts: %1. Registered: %2, refused: %3, unknown: %4.</source>
        <translation>Чеков: %1. Зарегистрировано: %2, отклонено: %3, результат неизвестен: %4.</translation>
    </message>
    <message>
        <source>Receipts: %1. Accepted: %2, refused: %3, unknown: %4.</source>
        <translation>Чеков: %1. Принято: %2, отклонено: %3, результат неизвестен: %4.</translation>
    </message>
    <message>
        <source>Receipts not sent: %1.</source>
        <translation>Не отправлено чеков: %1.</translation>
    </message>
    <message>
        <source>Folder for pictures of the receipts&apos; QR codes</source>
        <translation>Папка для изображений QR-кодов чеков</translation>
    </message>
    <message>
        <source>%1: pictures cannot be written there; name another folder with --qr-dir</source>
        <translation>%1: сюда нельзя записать изображения; укажите другую папку в --qr-dir</translation>
    </message>
    <message>
        <source>%1: the picture of the QR code was not written: %2. The receipt is registered.</source>
        <translation>%1: изображение QR-кода не сохранено: %2. Чек зарегистрирован.</translation>
    </message>
    <message>
        <source>This run has not sent the receipt. Running the same file again is safe.</source>
        <translation>В этот раз чек не отправлен. Отправить тот же файл ещё раз безопасно.</translation>
    </message>
    <message>
        <source>Not sent, no connection</source>
        <translation>Не отправлен, нет связи</translation>
    </message>
    <message>
        <source>Not sent, no connection: %1</source>
        <translation>Не отправлен, нет связи: %1</translation>
    </message>
    <message>
        <source>%1 must be 1 to %2 milliseconds</source>
        <translation>%1: допустимо от 1 до %2 миллисекунд</translation>
    </message>
    <message>
        <source>%1 was accepted by the service.</source>
        <translation>Чек %1 принят сервисом.</translation>
    </message>
    <message>
        <source>%1 is registered.</source>
        <translation>Чек %1 зарегистрирован.</translation>
    </message>
    <message>
        <source>%1 was refused.</source>
        <translation>Чек %1 отклонён.</translation>
    </message>
    <message>
        <source>The outcome of %1 is unknown; run again.</source>
        <translation>Результат по чеку %1 неизвестен; отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>Nothing was sent.</source>
        <translation>Ничего не отправлено.</translation>
    </message>
    <message>
        <source>%1 was sent, its outcome is unknown; run again: the service does not register an id twice.</source>
        <translation>Чек %1 отправлен, результат неизвестен; отправьте чек ещё раз: один id сервис дважды не регистрирует.</translation>
    </message>
    <message>
        <source>%1 was not sent; run again.</source>
        <translation>Чек %1 не отправлен; отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>Interrupted. %1</source>
        <translation>Прервано. %1</translation>
    </message>
    <message>
        <source>Interrupted while waiting for the service</source>
        <translation>Прервано во время ожидания сервиса</translation>
    </message>
    <message>
        <source>Interrupted before it was sent</source>
        <translation>Прервано до отправки</translation>
    </message>
    <message>
        <source>Interrupted.</source>
        <translation>Прервано.</translation>
    </message>
    <message>
        <source>%1: larger than 1 MiB</source>
        <translation>%1: больше 1 МиБ</translation>
    </message>
    <message>
        <source>%1: the password is taken from here, not from the credential %2</source>
        <translation>%1: пароль взят из этого файла, а не из учётных данных systemd «%2»</translation>
    </message>
    <message>
        <source>%1: no such plugin file</source>
        <translation>%1: такого файла плагина нет</translation>
    </message>
    <message>
        <source>%1: not a fiscal-register plugin</source>
        <translation>%1: это не плагин кассы</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not the identifier of a document</source>
        <translation>«%1» — не идентификатор документа</translation>
    </message>
    <message>
        <source>The service says that the receipt is registered, but its answer does not prove it</source>
        <translation>Сервис сообщает, что чек зарегистрирован, но его ответ этого не подтверждает</translation>
    </message>
    <message>
        <source>Do NOT sell it under a new id. Running the same file again is safe and may fetch the missing evidence.</source>
        <translation>НЕ пробивайте эту продажу под новым id. Отправить тот же файл ещё раз безопасно: недостающие данные могут прийти.</translation>
    </message>
    <message>
        <source>%1 is registered according to the service, which has not proved it; run again.</source>
        <translation>Чек %1, по словам сервиса, зарегистрирован, но данных чека нет; отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>Registered, evidence incomplete: %1.</source>
        <translation>Зарегистрировано без полного подтверждения: %1.</translation>
    </message>
    <message>
        <source>registered, evidence incomplete</source>
        <translation>зарегистрирован, подтверждение неполное</translation>
    </message>
    <message>
        <source>Exit status, of several the highest:
  0  every receipt is registered
  1  an error on this machine
  2  a receipt file is wrong; nothing was sent
  3  a receipt was refused
  4  an outcome is unknown, no connection, or interrupted
  5  registered according to the service, which has not proved it</source>
        <translation>Код завершения, из нескольких — наибольший:
  0  все чеки зарегистрированы
  1  ошибка на этом компьютере
  2  ошибка в файле с чеками; ничего не отправлено
  3  чек отклонён
  4  результат неизвестен, нет связи или выполнение прервано
  5  сервис сообщил о регистрации, но не подтвердил её данными</translation>
    </message>
    <message>
        <source>The service says that the receipt is registered, but its answer has no valid %1</source>
        <translation>Сервис сообщает, что чек зарегистрирован, но в его ответе нет верных данных: %1</translation>
    </message>
    <message>
        <source>The service says that the receipt is registered, but with the total %1 instead of %2</source>
        <translation>Сервис сообщает, что чек зарегистрирован, но с итогом %1 вместо %2</translation>
    </message>
    <message>
        <source>The service says that the receipt is registered, but with the total %1 instead of %2, and its answer has no valid %3</source>
        <translation>Сервис сообщает, что чек зарегистрирован, но с итогом %1 вместо %2, и в его ответе нет верных данных: %3</translation>
    </message>
    <message>
        <source>The service refuses receipts of this account</source>
        <translation>Сервис не принимает чеки этой учётной записи</translation>
    </message>
    <message>
        <source>Correct groupCode, or login and password, in the configuration.</source>
        <translation>Исправьте в настройках groupCode или логин и пароль.</translation>
    </message>
    <message>
        <source>Correct login and password in the configuration.</source>
        <translation>Исправьте логин и пароль в настройках.</translation>
    </message>
    <message>
        <source>Nothing was registered, and no other receipt would be. %1 Then run the same file again.</source>
        <translation>Ничего не зарегистрировано, и другие чеки сервис тоже не примет. %1 После этого отправьте тот же файл ещё раз.</translation>
    </message>
    <message>
        <source>The service does not accept the tokens that it issues</source>
        <translation>Сервис не принимает токены, которые сам выдаёт</translation>
    </message>
    <message>
        <source>The group is for another version of the protocol: ask the service for one of version 4 and correct groupCode in the configuration.</source>
        <translation>Группа заведена для другой версии протокола: запросите у сервиса группу для версии 4 и исправьте groupCode в настройках.</translation>
    </message>
    <message>
        <source>Run: %1</source>
        <translation>Выполните: %1</translation>
    </message>
    <message>
        <source>Its owner, user %1, or an administrator should run: %2</source>
        <translation>Попросите владельца (пользователь %1) или администратора выполнить: %2</translation>
    </message>
    <message>
        <source>%1 holds a password and has the mode %2, so others can read it.</source>
        <translation>%1 содержит пароль и имеет права %2: его могут прочитать другие.</translation>
    </message>
    <message>
        <source>Only its owner, user %1, or an administrator can change that; you need a file of your own with the mode 0600.</source>
        <translation>Изменить это может только владелец (пользователь %1) или администратор; вам нужен собственный файл с правами 0600.</translation>
    </message>
    <message>
        <source>%1 has the mode %2, so others can change it, and with it the address that receives login and password.</source>
        <translation>%1 имеет права %2: другие могут изменить файл, а с ним и адрес, на который уходят логин и пароль.</translation>
    </message>
    <message>
        <source>%1 has the mode %2, so others can replace %3, and with it the address that receives login and password.</source>
        <translation>%1 имеет права %2: другие могут подменить %3, а с ним и адрес, на который уходят логин и пароль.</translation>
    </message>
    <message>
        <source>the key of line %1 is given again</source>
        <translation>повторён ключ из строки %1</translation>
    </message>
    <message>
        <source>not an option; write, for example, 0x10 = off</source>
        <translation>это не опция; пишите, например, 0x10 = off</translation>
    </message>
    <message>
        <source>an option must be &quot;on&quot; or &quot;off&quot;</source>
        <translation>опция может быть «on» или «off»</translation>
    </message>
    <message>
        <source>the folder has no name</source>
        <translation>не указано имя папки</translation>
    </message>
    <message>
        <source>%1: more than 256 MiB, the most that is read from standard input or a pipe. Nothing was sent. Put the receipts into a file.</source>
        <translation>%1: больше 256 МиБ, а больше из стандартного ввода или канала не читается. Ничего не отправлено. Запишите чеки в файл.</translation>
    </message>
    <message>
        <source>the file is a database of another program</source>
        <translation>этот файл — база данных другой программы</translation>
    </message>
    <message>
        <source>it was written by a newer version of this program (format %1, known here: %2)</source>
        <translation>он записан более новой версией программы (формат %1, здесь известен %2)</translation>
    </message>
    <message>
        <source>its file system does not support a write-ahead log</source>
        <translation>файловая система не поддерживает журнал упреждающей записи</translation>
    </message>
    <message>
        <source>the database does not wait for the disk</source>
        <translation>база данных не дожидается записи на диск</translation>
    </message>
    <message>
        <source>%1: the journal cannot be used: %2.</source>
        <translation>%1: не удаётся использовать журнал: %2.</translation>
    </message>
    <message>
        <source>the service has accepted it</source>
        <translation>сервис его принял</translation>
    </message>
    <message>
        <source>the service could not register it</source>
        <translation>сервис не смог его зарегистрировать</translation>
    </message>
    <message>
        <source>it is registered</source>
        <translation>он зарегистрирован</translation>
    </message>
    <message>
        <source>its outcome is unknown</source>
        <translation>результат неизвестен</translation>
    </message>
    <message>
        <source>Nothing is registered under this id, and it is used up. Give the sale a new id and run it again.</source>
        <translation>Под этим id ничего не зарегистрировано, но он уже использован. Дайте продаже новый id и отправьте чек ещё раз.</translation>
    </message>
    <message>
        <source>This receipt was not sent. If it is another sale, give it an id of its own and run it again. If it is the same sale, it is registered already.</source>
        <translation>Этот чек не отправлен. Если это другая продажа, дайте ей собственный id и отправьте чек ещё раз. Если это та же продажа, она уже зарегистрирована.</translation>
    </message>
    <message>
        <source>This receipt was not sent. If it is another sale, give it an id of its own and run it again. If it is the same sale, first run it exactly as it was sent, which shows what became of it.</source>
        <translation>Этот чек не отправлен. Если это другая продажа, дайте ей собственный id и отправьте чек ещё раз. Если это та же продажа, сначала отправьте её в точности такой же, как в первый раз: так выяснится результат.</translation>
    </message>
    <message>
        <source>Another receipt was sent under this id on %1 (%2): %3</source>
        <translation>Под этим id %1 уже отправлен другой чек (%2): %3</translation>
    </message>
    <message>
        <source>the id is in use</source>
        <translation>id уже использован</translation>
    </message>
    <message>
        <source>Journal of the receipts that were sent, instead of the user&apos;s own</source>
        <translation>Журнал отправленных чеков вместо журнала пользователя</translation>
    </message>
    <message>
        <source>the name of the file is empty</source>
        <translation>имя файла пустое</translation>
    </message>
    <message>
        <source>Correct the cause, name another file with --journal FILE, or do without a journal with --no-journal.</source>
        <translation>Устраните причину, укажите другой файл (--journal FILE) или откажитесь от журнала (--no-journal).</translation>
    </message>
    <message>
        <source>There is no folder for the journal, because HOME is not set. Nothing was sent.</source>
        <translation>Для журнала нет папки: переменная HOME не задана. Ничего не отправлено.</translation>
    </message>
    <message>
        <source>Compared</source>
        <translation>Сверено</translation>
    </message>
    <message>
        <source>only the total; the journal does not know the earlier receipt</source>
        <translation>только сумма; в журнале нет сведений о первом чеке</translation>
    </message>
    <message>
        <source>This very receipt was sent before, on %1 (%2): %3. Do NOT give it a new id because of this answer. Correct the cause and run the same file again.</source>
        <translation>Этот же чек уже отправлялся %1 (%2): %3. НЕ меняйте его id из-за этого ответа. Устраните причину и отправьте тот же файл ещё раз.</translation>
    </message>
    <message>
        <source>%1 has the same content as %2, sent on %3 (%4), which is not proven to be registered. If both are the same sale, it may be registered twice; running %2 again shows its outcome.</source>
        <translation>Чек %1 того же содержания, что и %2, отправленный %3 (%4); регистрация того чека не подтверждена. Если это одна и та же продажа, она может быть зарегистрирована дважды; повторная отправка %2 покажет, что с ним стало.</translation>
    </message>
    <message>
        <source>Explain a code of the service or a cause, and what to do</source>
        <translation>Объяснить код сервиса или причину и сказать, что делать</translation>
    </message>
    <message>
        <source>Code of the service, or words of a message or of the log; without it, all causes</source>
        <translation>Код сервиса либо слова из сообщения или журнала; без них — все причины</translation>
    </message>
    <message>
        <source>refused: not registered</source>
        <translation>отказ: не зарегистрирован</translation>
    </message>
    <message>
        <source>unknown: it may be registered</source>
        <translation>неизвестно: возможно, зарегистрирован</translation>
    </message>
    <message>
        <source>registered according to the service, which has not proved it</source>
        <translation>по словам сервиса зарегистрирован, но не доказано</translation>
    </message>
    <message>
        <source>not sent</source>
        <translation>не отправлен</translation>
    </message>
    <message>
        <source>that of the document, which the service is asked about</source>
        <translation>как у документа, о котором спрашивают сервис</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>ничего</translation>
    </message>
    <message>
        <source>run the same file again</source>
        <translation>отправить этот же файл ещё раз</translation>
    </message>
    <message>
        <source>correct the receipt and run it again under the same id</source>
        <translation>исправить чек и отправить его ещё раз с тем же id</translation>
    </message>
    <message>
        <source>sell it under a new id</source>
        <translation>отправить продажу с новым id</translation>
    </message>
    <message>
        <source>Next step</source>
        <translation>Что делать</translation>
    </message>
    <message>
        <source>Cashier</source>
        <translation>Кассиру</translation>
    </message>
    <message>
        <source>Administrator</source>
        <translation>Администратору</translation>
    </message>
    <message>
        <source>Programmer</source>
        <translation>Программисту</translation>
    </message>
    <message>
        <source>%1 is not a code of the service. The registers that it uses have codes of their own; &quot;frhost explain failed&quot; says what to do.</source>
        <translation>%1 — не код сервиса. У касс сервиса свои коды; что делать, покажет «frhost explain failed».</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a known cause. &quot;frhost explain&quot; lists all of them.</source>
        <translation>Причина «%1» неизвестна. Все причины показывает «frhost explain».</translation>
    </message>
    <message>
        <source>unknown key; %1</source>
        <translation>неизвестный ключ; %1</translation>
    </message>
    <message>
        <source>unknown section; %1</source>
        <translation>неизвестная секция; %1</translation>
    </message>
    <message>
        <source>there are %1</source>
        <translation>есть %1</translation>
    </message>
    <message>
        <source>did you mean &quot;%1&quot;?</source>
        <translation>возможно, имелось в виду «%1»?</translation>
    </message>
    <message>
        <source>unknown key &quot;%1&quot;; %2</source>
        <translation>неизвестный ключ «%1»; %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a level; the levels are %2</source>
        <translation>уровня «%1» нет; есть %2</translation>
    </message>
    <message>
        <source>Lowest level of log lines to show: debug, info, warning or error</source>
        <translation>Показывать строки журнала от этого уровня: debug, info, warning или error</translation>
    </message>
    <message>
        <source>Append the log to this file instead of showing it; from level info, unless --log-level says otherwise</source>
        <translation>Дописывать строки журнала в этот файл, а не на экран; от уровня info, если --log-level не велит иначе</translation>
    </message>
    <message>
        <source>No messages as long as all goes well, and no line with the seconds waited</source>
        <translation>Без сообщений, пока всё в порядке, и без строки с секундами ожидания</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Команды</translation>
    </message>
    <message>
        <source>Show this help and exit</source>
        <translation>Показать эту справку и выйти</translation>
    </message>
    <message>
        <source>Did you mean &quot;%1&quot;?</source>
        <translation>Возможно, «%1»?</translation>
    </message>
    <message>
        <source>There is no option &quot;%1&quot;.</source>
        <translation>Нет параметра «%1».</translation>
    </message>
    <message>
        <source>There is no command &quot;%1&quot;.</source>
        <translation>Нет команды «%1».</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one argument too many.</source>
        <translation>Лишний аргумент «%1».</translation>
    </message>
    <message>
        <source>%1 is missing.</source>
        <translation>Не указано: %1.</translation>
    </message>
    <message>
        <source>A command is missing.</source>
        <translation>Не указана команда.</translation>
    </message>
    <message>
        <source>%1 and %2 exclude each other.</source>
        <translation>%1 и %2 несовместимы.</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Вызов</translation>
    </message>
    <message>
        <source>OPTIONS</source>
        <translation>ПАРАМЕТРЫ</translation>
    </message>
    <message>
        <source>COMMAND</source>
        <translation>КОМАНДА</translation>
    </message>
    <message>
        <source>Arguments</source>
        <translation>Аргументы</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Параметры</translation>
    </message>
    <message>
        <source>More: %1 --help</source>
        <translation>Подробнее: %1 --help</translation>
    </message>
    <message>
        <source>The log file %1 cannot be written: %2.</source>
        <translation>Не удаётся записать файл журнала %1: %2.</translation>
    </message>
    <message>
        <source>Name another one with --log-file FILE.</source>
        <translation>Укажите другой: --log-file FILE.</translation>
    </message>
    <message>
        <source>The driver says that the receipt is registered, but returns no valid %1</source>
        <translation>Драйвер сообщает, что чек зарегистрирован, но не возвращает верного значения %1</translation>
    </message>
    <message>
        <source>The driver says that the receipt is registered, but returns the fiscal data of an earlier document</source>
        <translation>Драйвер сообщает, что чек зарегистрирован, но возвращает фискальные данные более раннего документа</translation>
    </message>
    <message>
        <source>The driver says that the receipt is registered, but with the total %1 instead of %2</source>
        <translation>Драйвер сообщает, что чек зарегистрирован, но на сумму %1 вместо %2</translation>
    </message>
    <message>
        <source>It may or may not be registered. Look at the register&apos;s last documents: if the sale is there, it is done; if it is not, sell it under a new id.</source>
        <translation>Чек мог быть зарегистрирован, а мог и не быть. Посмотрите последние документы кассы: если продажа там есть, она завершена; если её нет, проведите её под новым идентификатором.</translation>
    </message>
    <message>
        <source>Do NOT sell it again before you have looked at the register&apos;s last documents.</source>
        <translation>НЕ проводите продажу ещё раз, пока не посмотрите последние документы кассы.</translation>
    </message>
    <message>
        <source>The register was given this receipt on %1 already, its outcome was not known, and it was not given it again</source>
        <translation>Этот чек уже передавался кассе %1, результат остался неизвестен; повторно чек не передан</translation>
    </message>
    <message>
        <source>%1: not printed: %2</source>
        <translation>%1: не напечатан: %2</translation>
    </message>
    <message>
        <source>No connection to the register: %1. Nothing was sent.</source>
        <translation>Нет связи с кассой: %1. Ничего не отправлено.</translation>
    </message>
    <message>
        <source>%1 was given to the register, its outcome is unknown; look at the register&apos;s last documents.</source>
        <translation>Чек %1 передан кассе, результат неизвестен; посмотрите последние документы кассы.</translation>
    </message>
    <message>
        <source>Interrupted while waiting for the register</source>
        <translation>Прервано во время ожидания кассы</translation>
    </message>
    <message>
        <source>the driver&apos;s word</source>
        <translation>слово драйвера</translation>
    </message>
    <message>
        <source>the driver&apos;s word, recorded in the journal</source>
        <translation>слово драйвера, записанное в журнале</translation>
    </message>
    <message>
        <source>Another receipt may have been sent under this id on %1 (%2): %3</source>
        <translation>%1 с этим id, возможно, уже отправлен другой чек (%2): %3</translation>
    </message>
    <message>
        <source>%1 has the same content as %2, which may have been sent on %3 (%4) and is not proven to be registered. If both are the same sale, it may be registered twice; running %2 again shows its outcome.</source>
        <translation>У %1 то же содержимое, что у %2: тот, возможно, отправлен %3 (%4), и его регистрация не доказана. Если это одна и та же продажа, она может быть зарегистрирована дважды; что стало с %2, покажет его повторная отправка.</translation>
    </message>
    <message>
        <source>Not sent: the run ended before it</source>
        <translation>Не отправлен: до этого чека работа не дошла</translation>
    </message>
    <message>
        <source>%1: there is no picture of the QR code, because the service&apos;s answer has no valid time. The receipt is registered.</source>
        <translation>%1: картинки QR-кода нет, потому что в ответе сервиса нет правильного времени. Чек зарегистрирован.</translation>
    </message>
    <message>
        <source>The service says</source>
        <translation>Пояснение сервиса</translation>
    </message>
    <message>
        <source>Identifier of the error</source>
        <translation>Идентификатор ошибки</translation>
    </message>
    <message>
        <source>the receipt</source>
        <translation>чек</translation>
    </message>
    <message>
        <source>this</source>
        <translation>здесь</translation>
    </message>
    <message>
        <source>%1. Expected: %2</source>
        <translation>%1. Ожидается: %2</translation>
    </message>
    <message>
        <source>%1. The service may refuse the receipt.</source>
        <translation>%1. Сервис может не принять чек.</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>число</translation>
    </message>
    <message>
        <source>a number, without quotes</source>
        <translation>число без кавычек</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>целое число</translation>
    </message>
    <message>
        <source>a whole number, without quotes</source>
        <translation>целое число без кавычек</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true или false</translation>
    </message>
    <message>
        <source>true or false, without quotes</source>
        <translation>true или false без кавычек</translation>
    </message>
    <message>
        <source>a text in quotes</source>
        <translation>текст в кавычках</translation>
    </message>
    <message>
        <source>a list in square brackets</source>
        <translation>список в квадратных скобках</translation>
    </message>
    <message>
        <source>an object in curly brackets</source>
        <translation>объект в фигурных скобках</translation>
    </message>
    <message>
        <source>%1 must be %2</source>
        <translation>%1: нужно %2</translation>
    </message>
    <message>
        <source> or </source>
        <translation> или </translation>
    </message>
    <message>
        <source>a requisite must have a tag and either a value or members</source>
        <translation>в реквизите нужны tag и либо value, либо members</translation>
    </message>
    <message>
        <source>the key &quot;%1&quot; is missing</source>
        <translation>нет ключа «%1»</translation>
    </message>
    <message>
        <source>%1 must be at least %2</source>
        <translation>%1: не меньше %2</translation>
    </message>
    <message>
        <source>%1 must be at most %2</source>
        <translation>%1: не больше %2</translation>
    </message>
    <message>
        <source>%1 must not be empty</source>
        <translation>%1: не должно быть пусто</translation>
    </message>
    <message>
        <source>the buyer&apos;s telephone or e-mail is missing: a requisite with the tag 1008 and a value</source>
        <translation>нет телефона или электронного адреса покупателя: реквизита с tag 1008 и значением</translation>
    </message>
    <message>
        <source>the payments are %1 and the lines %2; the service accepts a difference of at most 0.99</source>
        <translation>оплата %1, позиции %2; сервис допускает разницу не больше 0.99</translation>
    </message>
    <message>
        <source>the service does not accept an empty text</source>
        <translation>сервис не принимает пустой текст</translation>
    </message>
    <message>
        <source>the service accepts at most %1 characters</source>
        <translation>сервис принимает не больше %1 символов</translation>
    </message>
    <message>
        <source>the service accepts 1 to %1</source>
        <translation>сервис принимает от 1 до %1</translation>
    </message>
    <message>
        <source>the service accepts 0 to %1</source>
        <translation>сервис принимает от 0 до %1</translation>
    </message>
    <message>
        <source>the service accepts two decimals</source>
        <translation>сервис принимает два знака после точки</translation>
    </message>
    <message>
        <source>the service accepts more than 0 and at most 99999.999</source>
        <translation>сервис принимает больше 0 и не больше 99999.999</translation>
    </message>
    <message>
        <source>the service accepts three decimals</source>
        <translation>сервис принимает три знака после точки</translation>
    </message>
    <message>
        <source>less the discount it is %1, but price times quantity is %2</source>
        <translation>за вычетом скидки %1, а цена, умноженная на количество, — %2</translation>
    </message>
    <message>
        <source>Refuse receipts that go beyond the limits of the service, instead of warning</source>
        <translation>Не принимать чеки, выходящие за ограничения сервиса, вместо предупреждения</translation>
    </message>
    <message>
        <source>Ask again later with the same command: it sends nothing.</source>
        <translation>Запросите позже той же командой: она ничего не отправляет.</translation>
    </message>
    <message>
        <source>Wait for documents that were sent, and show their fiscal results</source>
        <translation>Дождаться отправленных документов и показать фискальные данные</translation>
    </message>
    <message>
        <source>Try a receipt again for so long where its outcome is unknown: 30s, 10m, 1h</source>
        <translation>Сколько времени повторять чек, результат которого неизвестен: 30s, 10m, 1h</translation>
    </message>
    <message>
        <source>the time is a number with s, m or h</source>
        <translation>время — это число с s, m или h</translation>
    </message>
    <message>
        <source>Take receipts from standard input one by one as they come, and answer each at once</source>
        <translation>Принимать чеки со стандартного ввода по одному и отвечать на каждый сразу</translation>
    </message>
    <message>
        <source>The service&apos;s identifiers of the documents</source>
        <translation>Идентификаторы документов у сервиса</translation>
    </message>
    <message>
        <source>--stream reads standard input: its only FILE is -</source>
        <translation>--stream читает стандартный ввод: единственный файл — -</translation>
    </message>
    <message>
        <source>%1: %2. Trying again.</source>
        <translation>%1: %2. Повторная попытка.</translation>
    </message>
    <message>
        <source>Check the uuid and groupCode: the service knows a uuid for 32 days, and in its group alone.</source>
        <translation>Проверьте uuid и groupCode: сервис помнит uuid 32 дня, и только в своей группе.</translation>
    </message>
    <message>
        <source>%1 belongs to user %2, who can change it, and with it the address that receives login and password.</source>
        <translation>%1 принадлежит пользователю %2: он может изменить файл, а с ним и адрес, на который уходят логин и пароль.</translation>
    </message>
    <message>
        <source>An administrator should run: %1</source>
        <translation>Попросите администратора выполнить: %1</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Адрес</translation>
    </message>
    <message>
        <source>%1 does not begin with https://. Correct url in %2.</source>
        <translation>%1 не начинается с https://. Исправьте url в %2.</translation>
    </message>
    <message>
        <source>%1 names no server. Correct url in %2.</source>
        <translation>В %1 не указан сервер. Исправьте url в %2.</translation>
    </message>
    <message>
        <source>%1 is not encrypted: everybody on the way can read login and password. Write https:// in %2.</source>
        <translation>%1 без шифрования: логин и пароль может прочитать кто угодно по пути. Укажите https:// в %2.</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Учётная запись</translation>
    </message>
    <message>
        <source>Taxpayer number</source>
        <translation>ИНН</translation>
    </message>
    <message>
        <source>%1 has no inn. Add the company&apos;s 10 or 12 digits.</source>
        <translation>В %1 нет inn. Добавьте ИНН организации, 10 или 12 цифр.</translation>
    </message>
    <message>
        <source>%1 does not have 10 or 12 digits. Correct inn in %2.</source>
        <translation>В %1 не 10 и не 12 цифр. Исправьте inn в %2.</translation>
    </message>
    <message>
        <source>%1 cannot be right: its check digit does not match. Correct inn in %2.</source>
        <translation>Такого ИНН не бывает: в %1 не сходится контрольная цифра. Исправьте inn в %2.</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>Организация</translation>
    </message>
    <message>
        <source>%1 has no %2, without which the service refuses receipts.</source>
        <translation>В %1 нет %2, а без этого сервис отклоняет чеки.</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Часовой пояс</translation>
    </message>
    <message>
        <source>Locale</source>
        <translation>Локаль</translation>
    </message>
    <message>
        <source>%1 is not UTF-8: names of files and Russian texts may be garbled. Set LC_ALL=C.UTF-8 or another locale of UTF-8.</source>
        <translation>%1 — не UTF-8: имена файлов и русские тексты могут исказиться. Задайте LC_ALL=ru_RU.UTF-8 или другую локаль с UTF-8.</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Место</translation>
    </message>
    <message>
        <source>%1 cannot be written by this user. Change the permissions, or name another file.</source>
        <translation>Этот пользователь не может записать %1. Измените права или укажите другой файл.</translation>
    </message>
    <message>
        <source>%1: only %2 MiB are left. Make room.</source>
        <translation>%1: осталось только %2 МиБ. Освободите место.</translation>
    </message>
    <message>
        <source>%1: %2 MiB left</source>
        <translation>%1: свободно %2 МиБ</translation>
    </message>
    <message>
        <source>Names</source>
        <translation>Имена</translation>
    </message>
    <message>
        <source>%1 is not known to this machine&apos;s name servers: %2. Check the name and /etc/resolv.conf.</source>
        <translation>Серверы имён этого компьютера не знают %1: %2. Проверьте имя и /etc/resolv.conf.</translation>
    </message>
    <message>
        <source>Proxy</source>
        <translation>Прокси</translation>
    </message>
    <message>
        <source>none</source>
        <translation>нет</translation>
    </message>
    <message>
        <source>none; the environment&apos;s %1 are not used, only proxy in [transport] is</source>
        <translation>нет; переменные %1 не учитываются, нужен proxy в [transport]</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Система</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Права</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Связь</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Вход</translation>
    </message>
    <message>
        <source>The cause: %1. %2</source>
        <translation>Причина: %1. %2</translation>
    </message>
    <message>
        <source>login and password accepted</source>
        <translation>логин и пароль приняты</translation>
    </message>
    <message>
        <source>Clock</source>
        <translation>Часы</translation>
    </message>
    <message>
        <source>not checked: the service did not tell its time</source>
        <translation>не проверены: сервис не сообщил своё время</translation>
    </message>
    <message>
        <source>differs from the service&apos;s by %1 s</source>
        <translation>расхождение с сервисом: %1 с</translation>
    </message>
    <message>
        <source>This machine&apos;s clock is %1 min ahead of the service&apos;s.</source>
        <translation>Часы этого компьютера спешат на %1 мин.</translation>
    </message>
    <message>
        <source>This machine&apos;s clock is %1 min behind the service&apos;s.</source>
        <translation>Часы этого компьютера отстают на %1 мин.</translation>
    </message>
    <message>
        <source>Receipts carry its time. Correct clock or time zone.</source>
        <translation>Это время попадает в чеки. Исправьте часы или часовой пояс.</translation>
    </message>
    <message>
        <source>Certificate</source>
        <translation>Сертификат</translation>
    </message>
    <message>
        <source>none: the connection is not encrypted</source>
        <translation>нет: соединение без шифрования</translation>
    </message>
    <message>
        <source>accepted; it does not say until when it is valid</source>
        <translation>принят; срок действия в нём не указан</translation>
    </message>
    <message>
        <source>The service&apos;s certificate is valid until %1 only, days left: %2. Tell the service.</source>
        <translation>Сертификат сервиса действует только до %1, осталось дней: %2. Сообщите сервису.</translation>
    </message>
    <message>
        <source>valid until %1, days left: %2</source>
        <translation>действует до %1, осталось дней: %2</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Группа</translation>
    </message>
    <message>
        <source>Not checked: the service did not answer.</source>
        <translation>Не проверена: сервис не ответил.</translation>
    </message>
    <message>
        <source>%1, known to the service</source>
        <translation>%1, сервис её знает</translation>
    </message>
    <message>
        <source>The service does not know the group %1 for this login (code 20). Correct groupCode, or login and password.</source>
        <translation>Группы %1 для этого логина сервис не знает (код 20). Исправьте groupCode или логин и пароль.</translation>
    </message>
    <message>
        <source>The group %1 is for another version of the protocol (code 21). Ask the service for a group of version 4 and correct groupCode.</source>
        <translation>Группа %1 заведена для другой версии протокола (код 21). Запросите у сервиса группу для версии 4 и исправьте groupCode.</translation>
    </message>
    <message>
        <source>Not checked: the service answers with another error (code %1: %2).</source>
        <translation>Не проверена: сервис ответил другой ошибкой (код %1: %2).</translation>
    </message>
    <message>
        <source>Try again later; if it stays like this, ask the service.</source>
        <translation>Повторите позже; если не поможет, обратитесь в сервис.</translation>
    </message>
    <message>
        <source>Check url and the network.</source>
        <translation>Проверьте url и сеть.</translation>
    </message>
    <message>
        <source>The service at %1 does not accept the login: %2. Correct login and password in %3. No receipt was sent.</source>
        <translation>Сервис по адресу %1 не принял логин: %2. Исправьте логин и пароль в %3. Чеки не отправлены.</translation>
    </message>
    <message>
        <source>Cannot reach %1: %2. %3 No receipt was sent.</source>
        <translation>Нет связи с %1: %2. %3 Чеки не отправлены.</translation>
    </message>
    <message>
        <source>Check configuration, login, group and clock; registers nothing</source>
        <translation>Проверить настройки, вход, группу и часы; ничего не регистрирует</translation>
    </message>
    <message>
        <source>The same, and what else of this machine may be the fault</source>
        <translation>То же и всё, что на этом компьютере может мешать</translation>
    </message>
    <message>
        <source>Collect for support: doctor, configuration, log, exchanges; secrets masked</source>
        <translation>Собрать для поддержки: doctor, настройки, журнал, обмен; секреты скрыты</translation>
    </message>
    <message>
        <source>The archive to write, .tar.gz</source>
        <translation>Архив, который нужно записать, .tar.gz</translation>
    </message>
    <message>
        <source>tar: %1</source>
        <translation>tar: %1</translation>
    </message>
    <message>
        <source>Passwords, tokens, logins and buyers&apos; contacts are masked. Look through it before you send it on.</source>
        <translation>Пароли, токены, логины и контакты покупателей скрыты. Просмотрите архив, прежде чем отправлять его.</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Программа</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>There is none. Name one with --config FILE.</source>
        <translation>Файла настроек нет. Укажите его: --config FILE.</translation>
    </message>
    <message>
        <source>WRONG</source>
        <translation>ОШИБКА</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>внимание</translation>
    </message>
    <message>
        <source>note</source>
        <translation>сведения</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>в порядке</translation>
    </message>
    <message>
        <source>The service at %1 has blocked this account: %2. Only the service can unblock it. No receipt was sent.</source>
        <translation>Сервис по адресу %1 заблокировал учётную запись: %2. Разблокировать её может только сервис. Чеки не отправлены.</translation>
    </message>
    <message>
        <source>This is a single answer. Before you sell under a new id, run the same file again: sell believes a failure only when four answers agree.</source>
        <translation>Это один ответ. Прежде чем пробивать под новым id, отправьте тот же файл ещё раз: sell верит отказу, только когда совпали четыре ответа.</translation>
    </message>
    <message>
        <source>Waiting for receipts on standard input; Ctrl-D ends them.</source>
        <translation>Жду чеки на стандартном вводе; закончить — Ctrl-D.</translation>
    </message>
    <message>
        <source>%1 needs exactly one value.</source>
        <translation>После %1 нужно ровно одно значение.</translation>
    </message>
    <message>
        <source>The account is blocked: ask the service.</source>
        <translation>Учётная запись заблокирована: обратитесь в поддержку сервиса.</translation>
    </message>
    <message>
        <source>Evidence</source>
        <translation>Подтверждение</translation>
    </message>
    <message>
        <source>Show the versions of program, plugin and libraries, and exit</source>
        <translation>Показать версии программы, плагина и библиотек и выйти</translation>
    </message>
    <message>
        <source>Show the help of a command</source>
        <translation>Показать справку о команде</translation>
    </message>
    <message>
        <source>The command; without one, the help of the program</source>
        <translation>Команда; без неё — справка о программе</translation>
    </message>
    <message>
        <source>%1 %2, built with Qt %3: %4</source>
        <translation>%1 %2, собран с Qt %3: %4</translation>
    </message>
    <message>
        <source>without a version</source>
        <translation>без версии</translation>
    </message>
    <message>
        <source>The plugin&apos;s metadata has no name, under which the journal would keep its receipts</source>
        <translation>В метаданных плагина нет имени (name), без него журнал не может вести его чеки</translation>
    </message>
    <message>
        <source>The driver said on %1 that the receipt is registered, without proving it, and it was not given it again</source>
        <translation>%1 драйвер сообщил, что чек зарегистрирован, но не подтвердил это фискальными данными; повторно чек не передан</translation>
    </message>
    <message>
        <source>INI file with the register&apos;s settings; otherwise $FRHOST_CONFIG, then frhost/register.ini in $XDG_CONFIG_HOME (~/.config) or /etc</source>
        <translation>INI-файл с настройками кассы; без него — $FRHOST_CONFIG, затем frhost/register.ini в $XDG_CONFIG_HOME (~/.config) или /etc</translation>
    </message>
    <message>
        <source>Plugin library, instead of $FRHOST_PLUGIN or the one installed</source>
        <translation>Библиотека плагина вместо $FRHOST_PLUGIN или установленной</translation>
    </message>
    <message>
        <source>There is no configuration. Name one with --config FILE or FRHOST_CONFIG, or create one of: %1.</source>
        <translation>Нет файла настроек. Укажите его (--config FILE или FRHOST_CONFIG) или создайте один из: %1.</translation>
    </message>
    <message>
        <source>Several fiscal-register plugins: %1. Choose one with --plugin FILE or FRHOST_PLUGIN.</source>
        <translation>Найдено несколько плагинов: %1. Выберите один: --plugin FILE или FRHOST_PLUGIN.</translation>
    </message>
    <message>
        <source>Keep no journal: the service notices an id that is used twice by the total alone, another register not at all</source>
        <translation>Не вести журнал: повтор идентификатора сервис заметит только по сумме, а другая касса не заметит вовсе</translation>
    </message>
    <message>
        <source>%1 is registered according to the driver, which has not proved it; look at the register&apos;s last documents.</source>
        <translation>%1: по данным драйвера чек зарегистрирован, но не подтверждён; посмотрите последние документы кассы.</translation>
    </message>
    <message>
        <source>The outcome of %1 is unknown; look at the register&apos;s last documents.</source>
        <translation>%1: результат неизвестен; посмотрите последние документы кассы.</translation>
    </message>
    <message>
        <source>Without a journal, nothing notices an id that is used twice: running a file again registers it again.</source>
        <translation>Без журнала повтор идентификатора никто не заметит: при повторном запуске того же файла чек будет пробит ещё раз.</translation>
    </message>
    <message>
        <source>%1 must be %2 to %3</source>
        <translation>%1: допустимы значения от %2 до %3</translation>
    </message>
    <message>
        <source>no receipt with this id is in the queue of this register</source>
        <translation>чека с таким идентификатором нет в очереди этой кассы</translation>
    </message>
    <message>
        <source>it is finished (%1)</source>
        <translation>работа с ним закончена (%1)</translation>
    </message>
    <message>
        <source>a worker is sending it; try again when it has finished</source>
        <translation>он сейчас отправляется; повторите, когда отправка закончится</translation>
    </message>
    <message>
        <source>it is not held</source>
        <translation>он не задержан</translation>
    </message>
    <message>
        <source>it may have reached the service and cannot be cancelled any more</source>
        <translation>он мог дойти до сервиса, отменить его уже нельзя</translation>
    </message>
    <message>
        <source>this id is used up: retry it with --new-id</source>
        <translation>этот идентификатор использован: повторите с --new-id</translation>
    </message>
    <message>
        <source>it was sent again under another id</source>
        <translation>он уже отправлен повторно под другим идентификатором</translation>
    </message>
    <message>
        <source>it is %1 and may be registered; under a new id it could be registered twice</source>
        <translation>его состояние — %1, он мог быть зарегистрирован; под новым идентификатором он может быть зарегистрирован дважды</translation>
    </message>
    <message>
        <source>this id is in the queue already</source>
        <translation>такой идентификатор уже есть в очереди</translation>
    </message>
    <message>
        <source>/id: another receipt is queued under &quot;%1&quot; since %2 (%3:%4). Nothing was stored. Give another sale an id of its own.</source>
        <translation>/id: под идентификатором «%1» с %2 в очереди стоит другой чек (%3:%4). Ничего не сохранено. Дайте другой продаже свой идентификатор.</translation>
    </message>
    <message>
        <source>%1: the queue cannot be used: %2.</source>
        <translation>%1: не удаётся работать с очередью: %2.</translation>
    </message>
    <message>
        <source>nothing says how it was stored</source>
        <translation>нет записи о том, как он попал в очередь</translation>
    </message>
    <message>
        <source>it is finished, and its result is missing</source>
        <translation>работа с ним закончена, а результата нет</translation>
    </message>
    <message>
        <source>it has a history and is not there</source>
        <translation>история есть, а самого чека нет</translation>
    </message>
    <message>
        <source>it has the document of another receipt</source>
        <translation>у него фискальный документ другого чека</translation>
    </message>
    <message>
        <source>the file is damaged: %1</source>
        <translation>файл повреждён: %1</translation>
    </message>
    <message>
        <source>%1: another worker has taken this receipt over</source>
        <translation>%1: этот чек взял другой обработчик</translation>
    </message>
    <message>
        <source>%1: set aside until a person looks at it: frhost queue show %1</source>
        <translation>%1: отложен, нужно решение человека: frhost queue show %1</translation>
    </message>
    <message>
        <source>another worker has taken this receipt over</source>
        <translation>этот чек взял другой обработчик</translation>
    </message>
    <message>
        <source>Hand receipts over, and register them later</source>
        <translation>Сдать чеки в очередь и зарегистрировать их позже</translation>
    </message>
    <message>
        <source>the driver refuses the receipt: %1. Nothing was stored.</source>
        <translation>драйвер не принимает чек: %1. Ничего не сохранено.</translation>
    </message>
    <message>
        <source>%1: queued</source>
        <translation>%1: поставлен в очередь</translation>
    </message>
    <message>
        <source>There is no folder for the queue, because HOME is not set. Name a file as &quot;store&quot; in section [queue] of the configuration.</source>
        <translation>Нет папки для очереди: переменная HOME не задана. Укажите файл ключом store в разделе [queue] конфигурации.</translation>
    </message>
    <message>
        <source>Hand receipts over: they are on the disk when this ends with status 0</source>
        <translation>Сдать чеки в очередь: если код возврата 0, они записаны на диск</translation>
    </message>
    <message>
        <source>Register what is queued, until it is stopped</source>
        <translation>Регистрировать чеки из очереди, пока не остановят</translation>
    </message>
    <message>
        <source>Show results in the order of finishing, each with a cursor</source>
        <translation>Показать результаты по порядку завершения, каждый с отметкой места</translation>
    </message>
    <message>
        <source>Wait until receipts are finished; output and status as of sell</source>
        <translation>Дождаться завершения чеков; вывод и код возврата как у sell</translation>
    </message>
    <message>
        <source>List the receipts</source>
        <translation>Показать список чеков</translation>
    </message>
    <message>
        <source>Show everything that happened to a receipt</source>
        <translation>Показать всё, что происходило с чеком</translation>
    </message>
    <message>
        <source>Have a receipt sent again</source>
        <translation>Отправить чек ещё раз</translation>
    </message>
    <message>
        <source>Keep workers from a receipt</source>
        <translation>Задержать чек: не отправлять его</translation>
    </message>
    <message>
        <source>Let workers have a receipt that is held or set aside</source>
        <translation>Снова разрешить отправку задержанного или отложенного чека</translation>
    </message>
    <message>
        <source>Withdraw a receipt of which nothing was ever sent</source>
        <translation>Отменить чек, который ещё ни разу не отправлялся</translation>
    </message>
    <message>
        <source>Show counts and what is wrong</source>
        <translation>Показать счётчики и неполадки</translation>
    </message>
    <message>
        <source>Write finished receipts with their history, one line of JSON each</source>
        <translation>Выгрузить законченные чеки с их историей, по строке JSON на чек</translation>
    </message>
    <message>
        <source>Remove receipts that finished long ago</source>
        <translation>Удалить давно законченные чеки</translation>
    </message>
    <message>
        <source>the state is one of: %1</source>
        <translation>состояние — одно из: %1</translation>
    </message>
    <message>
        <source>the id is empty</source>
        <translation>идентификатор пуст</translation>
    </message>
    <message>
        <source>Id of a receipt</source>
        <translation>Идентификатор чека</translation>
    </message>
    <message>
        <source>End when nothing is left, or when the register does not come back within a minute</source>
        <translation>Закончить, когда очередь пуста или касса не отвечает около минуты</translation>
    </message>
    <message>
        <source>Only results after this cursor</source>
        <translation>Только результаты после этой отметки</translation>
    </message>
    <message>
        <source>Wait for further results</source>
        <translation>Ждать новых результатов</translation>
    </message>
    <message>
        <source>Only receipts in this state</source>
        <translation>Только чеки в этом состоянии</translation>
    </message>
    <message>
        <source>Under another id, for one that was not registered and whose id is used up</source>
        <translation>Под другим идентификатором, если чек не зарегистрирован, а прежний идентификатор использован</translation>
    </message>
    <message>
        <source>How long ago, in days, such as 90d</source>
        <translation>Сколько дней назад, например 90d</translation>
    </message>
    <message>
        <source>write a number of days, such as 90d</source>
        <translation>укажите число дней, например 90d</translation>
    </message>
    <message>
        <source>As OpenMetrics text</source>
        <translation>В текстовом формате OpenMetrics</translation>
    </message>
    <message>
        <source>under way</source>
        <translation>в работе</translation>
    </message>
    <message>
        <source>lost</source>
        <translation>потеряно</translation>
    </message>
    <message>
        <source>doubled</source>
        <translation>удвоено</translation>
    </message>
    <message>
        <source>recovered</source>
        <translation>восстановлено</translation>
    </message>
    <message>
        <source>removed: %1</source>
        <translation>удалено: %1</translation>
    </message>
    <message>
        <source>held</source>
        <translation>задержано</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>отменён</translation>
    </message>
    <message>
        <source>held until a person releases it</source>
        <translation>задержан, пока человек не разрешит отправку</translation>
    </message>
    <message>
        <source>The register is paused: %1</source>
        <translation>Касса приостановлена: %1</translation>
    </message>
    <message>
        <source>oldest, seconds</source>
        <translation>самый старый, секунд</translation>
    </message>
    <message>
        <source>event %1</source>
        <translation>событие %1</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>приостановлена</translation>
    </message>
    <message>
        <source>Interrupted: what is being sent is finished first.</source>
        <translation>Прервано: начатая отправка будет закончена.</translation>
    </message>
    <message>
        <source>Working</source>
        <translation>Работает</translation>
    </message>
    <message>
        <source>the file is not there any more</source>
        <translation>файла больше нет</translation>
    </message>
    <message>
        <source>the file was replaced</source>
        <translation>файл подменён другим</translation>
    </message>
    <message>
        <source>%1: the queue can be used again.</source>
        <translation>%1: очередь снова доступна.</translation>
    </message>
    <message>
        <source>The worker waits for it.</source>
        <translation>Обработчик ждёт, пока она станет доступна.</translation>
    </message>
    <message>
        <source>Ask the service about every receipt whose outcome is not known</source>
        <translation>Спросить сервис о каждом чеке, результат которого неизвестен</translation>
    </message>
    <message>
        <source>the service says that it is registered; a worker will prove it</source>
        <translation>сервис сообщает, что чек зарегистрирован; обработчик это проверит</translation>
    </message>
    <message>
        <source>the service says that it could not register it; a worker will ask again</source>
        <translation>сервис сообщает, что не смог его зарегистрировать; обработчик спросит ещё раз</translation>
    </message>
    <message>
        <source>the service is working on it</source>
        <translation>сервис его ещё обрабатывает</translation>
    </message>
    <message>
        <source>the service does not say what became of it</source>
        <translation>сервис не говорит, что с ним стало</translation>
    </message>
    <message>
        <source>its uuid has not arrived: only a worker can find out what became of it, by sending it again under its id</source>
        <translation>его uuid не получен: выяснить результат может только обработчик, отправив чек ещё раз под тем же идентификатором</translation>
    </message>
    <message>
        <source>handed over in the last minute</source>
        <translation>сдано за последнюю минуту</translation>
    </message>
    <message>
        <source>handed over in the last hour</source>
        <translation>сдано за последний час</translation>
    </message>
    <message>
        <source>finished in the last minute</source>
        <translation>завершено за последнюю минуту</translation>
    </message>
    <message>
        <source>finished in the last hour</source>
        <translation>завершено за последний час</translation>
    </message>
    <message>
        <source>Nothing was registered. %1</source>
        <translation>Ничего не зарегистрировано. %1</translation>
    </message>
    <message>
        <source>No answer from the service: %1</source>
        <translation>Нет ответа от сервиса: %1</translation>
    </message>
    <message>
        <source>The answer of the service at %1 holds no token. %2 No receipt was sent.</source>
        <translation>В ответе сервиса по адресу %1 нет токена. %2 Чеки не отправлены.</translation>
    </message>
    <message>
        <source>No answer from the service: %1. %2</source>
        <translation>Нет ответа от сервиса: %1. %2</translation>
    </message>
    <message>
        <source>en</source>
        <translation>ru</translation>
    </message>
    <message>
        <source>%1 is not installed on this machine: names of files and Russian texts may be garbled. Install it, or set LC_ALL=C.UTF-8.</source>
        <translation>%1 на этом компьютере не установлена: имена файлов и русские тексты могут исказиться. Установите её или задайте LC_ALL=C.UTF-8.</translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation>Текст пуст.</translation>
    </message>
    <message>
        <source>The document root must not be followed by other values.</source>
        <translation>После значения идёт ещё что-то.</translation>
    </message>
    <message>
        <source>Invalid value.</source>
        <translation>Недопустимое значение.</translation>
    </message>
    <message>
        <source>Missing a name for object member.</source>
        <translation>Нет имени ключа в кавычках.</translation>
    </message>
    <message>
        <source>Missing a colon after a name of object member.</source>
        <translation>Нет двоеточия после имени ключа.</translation>
    </message>
    <message>
        <source>Missing a comma or &apos;}&apos; after an object member.</source>
        <translation>После значения ключа нет запятой или &apos;}&apos;.</translation>
    </message>
    <message>
        <source>Missing a comma or &apos;]&apos; after an array element.</source>
        <translation>После элемента массива нет запятой или &apos;]&apos;.</translation>
    </message>
    <message>
        <source>Incorrect hex digit after \u escape in string.</source>
        <translation>После \u в строке не шестнадцатеричное число.</translation>
    </message>
    <message>
        <source>The surrogate pair in string is invalid.</source>
        <translation>Неверная суррогатная пара в строке.</translation>
    </message>
    <message>
        <source>Invalid escape character in string.</source>
        <translation>Недопустимый знак после \ в строке.</translation>
    </message>
    <message>
        <source>Missing a closing quotation mark in string.</source>
        <translation>Нет закрывающей кавычки.</translation>
    </message>
    <message>
        <source>Invalid encoding in string.</source>
        <translation>Строка не в UTF-8.</translation>
    </message>
    <message>
        <source>Number too big to be stored in double.</source>
        <translation>Слишком большое число.</translation>
    </message>
    <message>
        <source>Miss fraction part in number.</source>
        <translation>После точки в числе нет цифр.</translation>
    </message>
    <message>
        <source>Miss exponent in number.</source>
        <translation>В числе нет показателя степени.</translation>
    </message>
    <message>
        <source>This very receipt may have been sent before, on %1 (%2): %3. Do NOT give it a new id because of this answer. Correct the cause and run the same file again.</source>
        <translation>Этот же чек, возможно, уже отправлялся %1 (%2): %3. НЕ меняйте его id из-за этого ответа. Устраните причину и отправьте этот же файл ещё раз.</translation>
    </message>
    <message>
        <source>Not asked about: the run ended before it</source>
        <translation>Не запрошено: работа закончилась раньше</translation>
    </message>
    <message>
        <source>Not asked about: %1.</source>
        <translation>Не запрошено: %1.</translation>
    </message>
    <message>
        <source>%1 Trying again.</source>
        <translation>%1 Повторная попытка.</translation>
    </message>
    <message>
        <source>No log was named. If there is one, make the bundle again with --log-file FILE; if frhost runs as a service, add the output of journalctl.</source>
        <translation>Журнал не указан. Если он есть, соберите архив ещё раз с --log-file FILE; если frhost работает как служба, приложите вывод journalctl.</translation>
    </message>
    <message>
        <source>correct the account, the configuration or the machine, then run the same file again</source>
        <translation>устранить причину в учётной записи, настройках или на компьютере и отправить этот же файл ещё раз</translation>
    </message>
    <message>
        <source>The service at %1 issues no token: %2. %3 No receipt was sent.</source>
        <translation>Сервис по адресу %1 не выдаёт токен: %2. %3 Чеки не отправлены.</translation>
    </message>
    <message>
        <source>The service did not answer</source>
        <translation>Сервис не ответил</translation>
    </message>
    <message>
        <source>The option &quot;%1&quot; belongs after the command.</source>
        <translation>Параметр «%1» пишется после команды.</translation>
    </message>
    <message>
        <source>store must be the path of a file, or postgresql:service=NAME with the name of a service in the service file of PostgreSQL</source>
        <translation>store — это путь к файлу или postgresql:service=ИМЯ, где ИМЯ — раздел файла служб PostgreSQL (pg_service.conf)</translation>
    </message>
    <message>
        <source>the connection to the server is lost</source>
        <translation>связь с сервером потеряна</translation>
    </message>
    <message>
        <source>Nothing was registered, and this id is used up. Send it under a new one: frhost queue retry %1 --new-id NEW</source>
        <translation>Чек не зарегистрирован, этот идентификатор использован. Отправьте чек под новым: frhost queue retry %1 --new-id НОВЫЙ</translation>
    </message>
    <message>
        <source>This sale is NOT registered. Send it under an id of its own: frhost queue retry %1 --new-id NEW</source>
        <translation>Эта продажа НЕ зарегистрирована. Отправьте чек под отдельным идентификатором: frhost queue retry %1 --new-id НОВЫЙ</translation>
    </message>
    <message>
        <source>Nothing was registered. Correct the cause, then: frhost queue retry %1. If the receipt itself is wrong, hand the correct one over under another id.</source>
        <translation>Чек не зарегистрирован. Устраните причину и выполните: frhost queue retry %1. Если ошибка в самом чеке, сдайте исправленный чек под другим идентификатором.</translation>
    </message>
    <message>
        <source>Do NOT sell it under a new id. Have the service asked again: frhost queue release %1</source>
        <translation>НЕ пробивайте его под новым идентификатором. Чтобы спросить сервис ещё раз: frhost queue release %1</translation>
    </message>
    <message>
        <source>Look at what happened: frhost queue show %1. Then: frhost queue release %1</source>
        <translation>Посмотрите, что произошло: frhost queue show %1. Затем: frhost queue release %1</translation>
    </message>
    <message>
        <source>The register works again.</source>
        <translation>Касса снова работает.</translation>
    </message>
    <message>
        <source>the cursor is a number, as results shows it</source>
        <translation>отметка места — число, как его показывает results</translation>
    </message>
    <message>
        <source>%1: already queued: %2</source>
        <translation>%1: уже в очереди: %2</translation>
    </message>
    <message>
        <source>If it is to be sold after all: frhost queue retry %1 --new-id NEW</source>
        <translation>Если чек всё же нужен: frhost queue retry %1 --new-id НОВЫЙ</translation>
    </message>
    <message>
        <source>It was sent again under another id: frhost queue wait %1</source>
        <translation>Он отправлен повторно под другим идентификатором: frhost queue wait %1</translation>
    </message>
    <message>
        <source>%1: there is no queue here yet; frhost queue add creates it. If it should exist, check &quot;store&quot; in section [queue] of the configuration, whether its disk is mounted, and as which user you run this.</source>
        <translation>%1: очереди здесь ещё нет, её создаст frhost queue add. Если она должна быть, проверьте store в разделе [queue] настроек, подключён ли диск и от имени какого пользователя выполняется команда.</translation>
    </message>
    <message>
        <source>%1: the queue does not know the register %2; frhost queue add enters it. No other register is in it either.</source>
        <translation>%1: в очереди нет кассы %2, её добавит frhost queue add. Других касс в ней тоже нет.</translation>
    </message>
    <message>
        <source>%1: the queue does not know the register %2. Check url and groupCode in the configuration, and &quot;store&quot; in its section [queue]. The queue holds receipts of: %3.</source>
        <translation>%1: в очереди нет кассы %2. Проверьте url и groupCode в настройках и store в их разделе [queue]. В очереди есть чеки касс: %3.</translation>
    </message>
    <message>
        <source>it has reached the service and cannot be cancelled any more</source>
        <translation>он дошёл до сервиса, отменить его уже нельзя</translation>
    </message>
    <message>
        <source>Check that no receipt is lost and no document is shared; status 1 if not</source>
        <translation>Проверить, что нет потерянных чеков и общих документов; иначе код 1</translation>
    </message>
    <message>
        <source>Unfinished receipts of another register in this queue: %1 (%2). Only a worker with its url and groupCode sends them; if you have changed these, run one with the former ones.</source>
        <translation>Незавершённых чеков другой кассы в этой очереди: %1 (%2). Их отправит только обработчик с её url и groupCode; если вы их изменили, запустите обработчик с прежними.</translation>
    </message>
    <message>
        <source>%1 holds the buyers&apos; telephones and e-mail addresses and has the mode %2, so others can read it. Its owner should run: %3</source>
        <translation>%1 содержит телефоны и адреса почты покупателей и имеет права %2: его могут прочитать другие. Владельцу следует выполнить: %3</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was removed while it was added. Nothing was stored: add it again.</source>
        <translation>«%1» удалён из очереди, пока добавлялся. Ничего не записано: добавьте ещё раз.</translation>
    </message>
</context>
</TS>
